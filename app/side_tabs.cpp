#include "app/side_tabs.h"

#include <QPaintEvent>
#include <QStyleOptionTab>
#include <QStylePainter>
#include <QTabBar>

namespace vexa {
namespace {

// The toolkit turns the captions of side tabs with the tab; this turns them back.
class UprightTabs : public QTabBar {
 protected:
  QSize tabSizeHint(int index) const override { return QTabBar::tabSizeHint(index).transposed(); }

  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    for (int i = 0; i < count(); ++i) {
      QStyleOptionTab tab;
      initStyleOption(&tab, i);
      painter.drawControl(QStyle::CE_TabBarTabShape, tab);
      painter.save();
      const QPoint middle = tab.rect.center();
      QRect turned(QPoint(), tab.rect.size().transposed());
      turned.moveCenter(middle);
      tab.rect = turned;
      painter.translate(middle);
      painter.rotate(90);
      painter.translate(-middle);
      painter.drawControl(QStyle::CE_TabBarTabLabel, tab);
      painter.restore();
    }
  }
};

}  // namespace

SideTabs::SideTabs(QWidget* parent) : QTabWidget(parent) {
  setTabBar(new UprightTabs());
  setTabPosition(QTabWidget::West);
}

}  // namespace vexa
