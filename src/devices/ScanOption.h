// What can be set on a scanner, as its driver describes it, and which settings Lumora makes of its own accord.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace lumora {

/// A name of an option and the value that it is to get, in the words of the driver. A yes or no is "1" or "0", a number
/// has a decimal point.
struct ScanValue {
    QString name;
    QString value;
    bool operator==(const ScanValue &) const = default;
};

struct ScanOption {
    enum class Kind { YesNo, Number, Word };
    enum class Unit { None, Pixel, Millimetre, DotsPerInch, Percent, Other };

    QString name; ///< the driver's: "mode", "resolution", "tl-x"
    Kind kind = Kind::Number;
    Unit unit = Unit::None;
    QString value; ///< what it is set to now
    bool hasRange = false;
    double least = 0;    ///< of the range
    double most = 0;     ///< of the range
    QStringList choices; ///< the values that it can have; empty where it has none to choose from

    double number() const { return value.toDouble(); }
    /// The value nearest to the wanted number that the option can have.
    double nearest(double wanted) const;
};

/// As one text, which holds any name and value, and back; nothing for a text that is none.
QByteArray toJson(const QList<ScanOption> &options);
std::optional<QList<ScanOption>> scanOptionsFromJson(const QByteArray &json);

/// The option of that name, or null.
const ScanOption *findOption(const QList<ScanOption> &options, const QString &name);

/// How the driver's word for a mode ("Color", "True Gray", "Lineart") makes the picture.
enum class ScanColours { Colour, Grey, BlackAndWhite, Other };
ScanColours coloursOf(const QString &mode);

/// The driver's word for these colours, its plainest where it has several; empty where it has none.
QString modeFor(const QList<ScanOption> &options, ScanColours colours);

/// The settings of a scan that nobody is asked about: colour, 8 bits, 300 dots per inch or what is nearest to that, all
/// of the glass. What the scanner cannot be told is left out.
QList<ScanValue> automaticScan(const QList<ScanOption> &options);

/// The settings for that resolution in dots per inch, in both directions.
QList<ScanValue> resolutionValues(const QList<ScanOption> &options, double dotsPerInch);

} // namespace lumora
