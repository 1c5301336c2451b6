#include "devices/ScanOption.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr double usualResolution = 300; // dots per inch: a photo printed at its own size looks sharp

/// Words that drivers use in the names of their modes, in lower case, the first that is found counts.
struct ColourRow {
    const char *part;
    ScanColours colours;
};
constexpr ColourRow colourRows[] = {
    {"lineart", ScanColours::BlackAndWhite},
    {"line art", ScanColours::BlackAndWhite},
    {"halftone", ScanColours::BlackAndWhite},
    {"binary", ScanColours::BlackAndWhite},
    {"black", ScanColours::BlackAndWhite},
    {"gray", ScanColours::Grey},
    {"grey", ScanColours::Grey},
    {"color", ScanColours::Colour},
    {"colour", ScanColours::Colour},
    {"rgb", ScanColours::Colour},
};

QString textOf(double number) {
    return QString::number(number, 'g', 10);
}

} // namespace

double ScanOption::nearest(double wanted) const {
    if (hasRange) {
        return std::max(least, std::min(wanted, most)); // whatever order the driver has them in
    }
    double best = choices.isEmpty() ? wanted : choices.first().toDouble();
    for (const QString &choice : choices) {
        const double offered = choice.toDouble();
        if (std::abs(offered - wanted) < std::abs(best - wanted)) {
            best = offered;
        }
    }
    return best;
}

QByteArray toJson(const QList<ScanOption> &options) {
    QJsonArray rows;
    for (const ScanOption &option : options) {
        QJsonObject row{{"name", option.name},
                        {"kind", static_cast<int>(option.kind)},
                        {"unit", static_cast<int>(option.unit)},
                        {"value", option.value},
                        {"choices", QJsonArray::fromStringList(option.choices)}};
        if (option.hasRange) {
            row.insert("least", option.least);
            row.insert("most", option.most);
        }
        rows.append(row);
    }
    return QJsonDocument(rows).toJson(QJsonDocument::Compact);
}

std::optional<QList<ScanOption>> scanOptionsFromJson(const QByteArray &json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<ScanOption> options;
    for (const auto &value : document.array()) {
        const QJsonObject row = value.toObject();
        ScanOption option;
        option.name = row["name"].toString();
        option.kind = static_cast<ScanOption::Kind>(std::clamp(row["kind"].toInt(), 0, 2));
        option.unit = static_cast<ScanOption::Unit>(std::clamp(row["unit"].toInt(), 0, 5));
        option.value = row["value"].toString();
        option.hasRange = row.contains("least") && row.contains("most");
        option.least = row["least"].toDouble();
        option.most = row["most"].toDouble();
        for (const auto &choice : row["choices"].toArray()) {
            option.choices.append(choice.toString());
        }
        if (!option.name.isEmpty()) {
            options.append(option);
        }
    }
    return options;
}

const ScanOption *findOption(const QList<ScanOption> &options, const QString &name) {
    const auto found =
        std::find_if(options.begin(), options.end(), [&](const auto &each) { return each.name == name; });
    return found != options.end() ? &*found : nullptr;
}

ScanColours coloursOf(const QString &mode) {
    for (const ColourRow &row : colourRows) {
        if (mode.contains(QLatin1StringView(row.part), Qt::CaseInsensitive)) {
            return row.colours;
        }
    }
    return ScanColours::Other;
}

QString modeFor(const QList<ScanOption> &options, ScanColours colours) {
    QString best;
    if (const ScanOption *mode = findOption(options, "mode")) {
        for (const QString &choice : mode->choices) {
            // "Color" before "Color (48 bits)" and "Color Lineart"
            if (coloursOf(choice) == colours && (best.isEmpty() || choice.size() < best.size())) {
                best = choice;
            }
        }
    }
    return best;
}

QList<ScanValue> resolutionValues(const QList<ScanOption> &options, double dotsPerInch) {
    QList<ScanValue> values;
    for (const char *name : {"resolution", "x-resolution", "y-resolution"}) {
        const ScanOption *option = findOption(options, name);
        if (option != nullptr && option->kind == ScanOption::Kind::Number) {
            values.append({name, textOf(option->nearest(dotsPerInch))});
        }
    }
    return values;
}

QList<ScanValue> automaticScan(const QList<ScanOption> &options) {
    QList<ScanValue> values;
    const QString mode = modeFor(options, ScanColours::Colour);
    if (!mode.isEmpty()) {
        values.append({"mode", mode});
    }
    const ScanOption *depth = findOption(options, "depth");
    if (depth != nullptr && depth->kind == ScanOption::Kind::Number) {
        values.append({"depth", textOf(depth->nearest(8))});
    }
    values += resolutionValues(options, usualResolution);
    // The far corner first: the near one may not lie beyond it.
    for (const char *name : {"br-x", "br-y", "tl-x", "tl-y"}) {
        const ScanOption *edge = findOption(options, name);
        if (edge != nullptr && edge->hasRange) {
            values.append({name, textOf(name[0] == 'b' ? edge->most : edge->least)});
        }
    }
    return values;
}

} // namespace lumora
