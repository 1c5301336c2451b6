// The lines that lumora-devices prints: fields separated by tabs.
#pragma once

class QString;

/// WHAT, the name by which the system knows a device, and the name to show.
void printLine(const char *what, const QString &name, const QString &shown);
