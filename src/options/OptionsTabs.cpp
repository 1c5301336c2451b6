#include "options/OptionsTabs.h"

#include "widgets/Accessibility.h"
#include "widgets/PictureButton.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int tabPicture = 44; // pixels
constexpr int tabWidth = 136;

/// Enter on a tab is left to the window: the tab is already chosen.
class Tab : public PictureButton {
  public:
    using PictureButton::PictureButton;

  protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            event->ignore();
            return;
        }
        PictureButton::keyPressEvent(event);
    }
};

} // namespace

OptionsTabs::OptionsTabs(const QString &name, QWidget *parent)
    : QWidget(parent), m_column(new QVBoxLayout(this)), m_tabs(this) {
    setObjectName(name);
    setAccessibleRole(*this, QAccessible::PageTabList);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(8);
    connect(&m_tabs, &QButtonGroup::idToggled, this, [this](int place, bool chosen) {
        if (chosen) {
            Q_EMIT currentChanged(place);
        }
    });
}

void OptionsTabs::addTab(const QString &key, const QString &iconName) {
    auto *tab = new Tab(iconName, PictureButton::CaptionPlace::Below, this);
    tab->setProperty("key", key);
    tab->setCheckable(true);
    setAccessibleRole(*tab, QAccessible::PageTab);
    tab->setLook(PictureButton::Look::Raised);
    tab->setPictureSize(tabPicture);
    tab->setFixedWidth(tabWidth);
    tab->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    const auto place = static_cast<int>(m_tabs.buttons().size());
    m_tabs.addButton(tab, place);
    m_column->addWidget(tab, 1);
    tab->setChecked(place == 0);
}

void OptionsTabs::setCurrent(int place) {
    if (QAbstractButton *tab = m_tabs.button(place)) {
        tab->setChecked(true);
    }
}

void OptionsTabs::step(int by) {
    const auto count = static_cast<int>(m_tabs.buttons().size());
    setCurrent((current() + by + count) % count);
    m_tabs.checkedButton()->setFocus(Qt::TabFocusReason);
}

} // namespace lumora
