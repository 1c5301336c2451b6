// What lumora-devices says aloud, through the speech service of the desktop.
#pragma once

/// Speaks what comes on standard input until that ends: a line each, the locale ("de_DE"), a tab and the text. Every
/// such line, and an empty one, stops what is being said; of several that are waiting only the last one is spoken. A
/// line that is a locale alone has a voice looked for. What has no voice of its language is not spoken, nor what comes
/// while there is no speech service.
void speakLines();

/// Prints a line "voice", the language of the voice and what speaks it, if a text of that locale would be spoken. False
/// when no speech service answers.
bool printVoice(const char *locale);
