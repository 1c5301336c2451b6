#include "output/print/CopiesBox.h"

#include "output/print/PrintJob.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <algorithm>

namespace lumora {

CopiesBox::CopiesBox(const QString &name, QWidget *parent) : QWidget(parent), m_field(new QLineEdit("1", this)) {
    m_field->setObjectName(name);
    m_field->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]{0,3}"), m_field));
    m_field->setAlignment(Qt::AlignCenter);
    QFont large = m_field->font();
    large.setPointSizeF(18);
    m_field->setFont(large);
    m_field->setFixedSize(76, simpleButton);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [this, row](const char *button, const char *icon, int by) {
        auto *one = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
        one->setObjectName(button);
        one->setLook(PictureButton::Look::Raised);
        one->setFixedSize(simpleButton, simpleButton);
        one->setAutoRepeat(true);
        connect(one, &QAbstractButton::clicked, this, [this, by] { step(by); });
        row->addWidget(one);
    };
    add("cmdDown", "minus", -1);
    row->addWidget(m_field);
    add("cmdUp", "plus", 1);
    setTabOrder(m_field, findChild<QWidget *>("cmdUp"));
}

int CopiesBox::copies() const {
    return std::clamp(m_field->text().toInt(), 1, mostCopies);
}

void CopiesBox::step(int by) {
    m_field->setText(QString::number(std::clamp(m_field->text().toInt() + by, 1, mostCopies)));
}

} // namespace lumora
