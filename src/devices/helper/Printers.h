// What lumora-devices does with printers. Each function prints its answer and returns whether it is complete.
#pragma once

/// One line for each printer, and one for the default printer.
bool printPrinters();

/// "paper", then fields separated by tabs: width and height of the sheet, left, top, right and bottom margin, all in
/// whole points as programs that read PDF expect them, and the dots per inch. Nothing for a printer that does not
/// exist.
bool printPaper(const char *printer);

/// Prints a PDF file on sheets of that size (points): "sent", "waiting" (sent, but the printer is not ready),
/// "missing" (no such printer), "refused", or nothing. `options` are NAME=VALUE. An empty printer is the default one.
/// Sent SIGTERM, it takes back what the print system does not have completely.
bool printDocument(const char *printer, const char *title, const char *file, double width, double height,
                   int optionCount, char **options);
