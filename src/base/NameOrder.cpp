#include "base/NameOrder.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>

namespace lumora {

void sortByName(QStringList &names) {
    // The C locale compares names by bytes only: photo10 would sort before photo2.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), [&](const QString &a, const QString &b) {
        const int order = collator.compare(a, b);
        return order != 0 ? order < 0 : a < b;
    });
}

} // namespace lumora
