#include "devices/helper/SaneDevice.h"

#include <QVarLengthArray>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace lumora {

namespace {

using Descriptor = SANE_Option_Descriptor;

/// Drivers use UTF-8 or, older ones, Latin-1.
QString decoded(const char *text) {
    const QByteArrayView bytes(text);
    return bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
}

double numberOf(SANE_Word word, SANE_Value_Type type) {
    return type == SANE_TYPE_FIXED ? SANE_UNFIX(word) : word;
}

QString textOf(SANE_Word word, SANE_Value_Type type) {
    return QString::number(numberOf(word, type), 'g', 10);
}

bool isNumber(const Descriptor &option) {
    return option.type == SANE_TYPE_INT || option.type == SANE_TYPE_FIXED;
}

/// Whether it has one value that a program can set at the moment.
bool canBeSet(const Descriptor &option) {
    const bool oneValue = (option.size == sizeof(SANE_Word) && (isNumber(option) || option.type == SANE_TYPE_BOOL)) ||
                          (option.type == SANE_TYPE_STRING && option.size > 0);
    return option.name != nullptr && option.name[0] != '\0' && oneValue && SANE_OPTION_IS_ACTIVE(option.cap) &&
           SANE_OPTION_IS_SETTABLE(option.cap);
}

ScanOption::Unit unitOf(SANE_Unit unit) {
    switch (unit) {
    case SANE_UNIT_NONE:
        return ScanOption::Unit::None;
    case SANE_UNIT_PIXEL:
        return ScanOption::Unit::Pixel;
    case SANE_UNIT_MM:
        return ScanOption::Unit::Millimetre;
    case SANE_UNIT_DPI:
        return ScanOption::Unit::DotsPerInch;
    case SANE_UNIT_PERCENT:
        return ScanOption::Unit::Percent;
    default:
        return ScanOption::Unit::Other;
    }
}

QStringList choicesOf(const Descriptor &option) {
    QStringList choices;
    if (option.constraint_type == SANE_CONSTRAINT_STRING_LIST) {
        for (const SANE_String_Const *word = option.constraint.string_list; *word != nullptr; ++word) {
            choices.append(decoded(*word));
        }
    } else if (option.constraint_type == SANE_CONSTRAINT_WORD_LIST) {
        const SANE_Word *list = option.constraint.word_list;
        for (SANE_Word i = 1; i <= list[0]; ++i) {
            choices.append(textOf(list[i], option.type));
        }
    }
    return choices;
}

/// The nearest value that the option can have.
SANE_Word constrained(const Descriptor &option, double wanted) {
    const bool fixed = option.type == SANE_TYPE_FIXED;
    const double scale = fixed ? 1 << SANE_FIXED_SCALE_SHIFT : 1;
    double value = std::clamp(std::round(wanted * scale), -2147483648.0, 2147483647.0);
    if (option.constraint_type == SANE_CONSTRAINT_RANGE) {
        const SANE_Range &range = *option.constraint.range;
        if (range.quant > 0) {
            value = range.min + std::round((value - range.min) / range.quant) * range.quant;
        }
        value = std::max<double>(range.min, std::min<double>(value, range.max));
    } else if (option.constraint_type == SANE_CONSTRAINT_WORD_LIST && option.constraint.word_list[0] > 0) {
        const SANE_Word *list = option.constraint.word_list;
        value = *std::min_element(list + 1, list + 1 + list[0],
                                  [&](SANE_Word a, SANE_Word b) { return std::abs(a - value) < std::abs(b - value); });
    }
    return static_cast<SANE_Word>(value);
}

/// The bytes that the driver wants for a text; one of its own list byte for byte as it is there.
QByteArray bytesFor(const Descriptor &option, const QString &text) {
    if (option.constraint_type == SANE_CONSTRAINT_STRING_LIST) {
        for (const SANE_String_Const *word = option.constraint.string_list; *word != nullptr; ++word) {
            if (decoded(*word) == text) {
                return *word;
            }
        }
    }
    return text.toUtf8();
}

} // namespace

ScanStatus statusOf(SANE_Status status) {
    switch (status) {
    case SANE_STATUS_GOOD:
    case SANE_STATUS_EOF:
        return ScanStatus::Good;
    case SANE_STATUS_CANCELLED:
        return ScanStatus::Cancelled;
    case SANE_STATUS_DEVICE_BUSY:
        return ScanStatus::Busy;
    case SANE_STATUS_JAMMED:
        return ScanStatus::Jammed;
    case SANE_STATUS_NO_DOCS:
        return ScanStatus::NoPaper;
    case SANE_STATUS_COVER_OPEN:
        return ScanStatus::CoverOpen;
    case SANE_STATUS_NO_MEM:
        return ScanStatus::NoMemory;
    case SANE_STATUS_ACCESS_DENIED:
        return ScanStatus::NotAllowed;
    case SANE_STATUS_IO_ERROR:
        return ScanStatus::NotAnswering;
    default:
        return ScanStatus::Unsupported;
    }
}

SaneDevice::SaneDevice(const QString &name) {
    SANE_Status status = sane_init(nullptr, nullptr);
    if (status == SANE_STATUS_GOOD) {
        status = sane_open(name.toUtf8().constData(), &m_handle);
    }
    // A name that the system does not know any more: the scanner has been unplugged or switched off.
    m_status = status == SANE_STATUS_INVAL ? ScanStatus::NotAnswering : lumora::statusOf(status);
}

const SANE_Option_Descriptor *SaneDevice::find(const QString &name, SANE_Int &index) const {
    // Looked up each time: setting one option may change all the others.
    SANE_Int count = 0;
    sane_control_option(m_handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr);
    for (index = 1; index < count; ++index) {
        const Descriptor *option = sane_get_option_descriptor(m_handle, index);
        if (option != nullptr && canBeSet(*option) && decoded(option->name) == name) {
            return option;
        }
    }
    return nullptr;
}

QList<ScanOption> SaneDevice::options() const {
    QList<ScanOption> options;
    SANE_Int count = 0;
    sane_control_option(m_handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr);
    for (SANE_Int index = 1; index < count; ++index) {
        const Descriptor *descriptor = sane_get_option_descriptor(m_handle, index);
        if (descriptor == nullptr || !canBeSet(*descriptor)) {
            continue;
        }
        QVarLengthArray<SANE_Word, 64> value(descriptor->size / static_cast<SANE_Int>(sizeof(SANE_Word)) + 1, 0);
        if (SANE_OPTION_IS_SETTABLE(descriptor->cap) && (descriptor->cap & SANE_CAP_SOFT_DETECT) != 0 &&
            sane_control_option(m_handle, index, SANE_ACTION_GET_VALUE, value.data(), nullptr) != SANE_STATUS_GOOD) {
            continue;
        }
        ScanOption option;
        option.name = decoded(descriptor->name);
        option.unit = unitOf(descriptor->unit);
        option.choices = choicesOf(*descriptor);
        if (descriptor->type == SANE_TYPE_STRING) {
            option.kind = ScanOption::Kind::Word;
            option.value = decoded(reinterpret_cast<const char *>(value.constData()));
        } else {
            option.kind = isNumber(*descriptor) ? ScanOption::Kind::Number : ScanOption::Kind::YesNo;
            option.value = textOf(value[0], descriptor->type);
        }
        if (isNumber(*descriptor) && descriptor->constraint_type == SANE_CONSTRAINT_RANGE) {
            option.hasRange = true;
            option.least = numberOf(descriptor->constraint.range->min, descriptor->type);
            option.most = numberOf(descriptor->constraint.range->max, descriptor->type);
        }
        options.append(option);
    }
    return options;
}

void SaneDevice::set(const ScanValue &value) {
    SANE_Int index = 0;
    const Descriptor *option = find(value.name, index);
    if (option == nullptr) {
        return;
    }
    if (option->type == SANE_TYPE_STRING) {
        QByteArray text = bytesFor(*option, value.value).left(option->size - 1);
        text.resize(option->size, '\0'); // the driver may write there
        sane_control_option(m_handle, index, SANE_ACTION_SET_VALUE, text.data(), nullptr);
        return;
    }
    bool isANumber = false;
    const double number = value.value.toDouble(&isANumber);
    if (isANumber && std::isfinite(number)) {
        SANE_Word word =
            option->type == SANE_TYPE_BOOL ? (number != 0 ? SANE_TRUE : SANE_FALSE) : constrained(*option, number);
        sane_control_option(m_handle, index, SANE_ACTION_SET_VALUE, &word, nullptr);
    }
}

} // namespace lumora
