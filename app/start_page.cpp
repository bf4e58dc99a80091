#include "app/start_page.h"

#include <QAction>
#include <QFont>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QVBoxLayout>
#include <string_view>

#include "app/qt_text.h"
#include "app/svg_icon.h"

namespace vexa {
namespace {

constexpr int kMargin = 28;
constexpr int kLeastWidth = 300;
constexpr int kStartIconPx = 20;
constexpr int kMostRecent = 5;

struct WayRow {
  std::string_view Entry;
  std::string_view Icon;
};

constexpr WayRow kWays[] = {{"mnuOpen", "open"},
                            {"mnuPaste", "paste"},
                            {"mnuDownload", "download"},
                            {"mnuExample", "diagram"}};

QLabel* AddLabel(QVBoxLayout& column, const QString& text, double larger, bool bold) {
  auto* label = new QLabel(text);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * larger);
  font.setBold(bold);
  label->setFont(font);
  column.addWidget(label);
  return label;
}

}  // namespace

StartPage::StartPage(const Program& program, const QMainWindow& window, QWidget* over)
    : QFrame(over), program_(program), window_(window) {
  setObjectName(QStringLiteral("StartPage"));
  auto* middle = new QVBoxLayout(over);
  middle->addWidget(this, 0, Qt::AlignCenter);
  hide();
}

void StartPage::Build() {
  setAutoFillBackground(true);
  setFrameShape(QFrame::StyledPanel);
  setCursor(Qt::ArrowCursor);
  setMinimumWidth(kLeastWidth);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  AddLabel(*column, QStringLiteral("Open a sounding"), 1.6, true);
  AddLabel(*column, QStringLiteral("or drop its file on this window"), 1, false);
  column->addSpacing(kMargin / 3);
  for (const WayRow& way : kWays) {
    auto* entry = window_.findChild<QAction*>(ToQString(way.Entry));
    if (entry != nullptr) AddButton(entry, IconNamed(way.Icon));
  }
  column->addSpacing(kMargin / 3);
  recentHead_ = AddLabel(*column, QStringLiteral("Opened last"), 1, true);
  for (int number = 1; number <= kMostRecent; ++number) {
    auto* entry = window_.findChild<QAction*>(QStringLiteral("mnuRecentFile%1").arg(number));
    if (entry != nullptr) recent_.push_back({AddButton(entry, {}), entry});
  }
}

QPushButton* StartPage::AddButton(QAction* entry, const QIcon& icon) {
  auto* button = new QPushButton(icon, QString(entry->text()).remove(QLatin1Char('&')), this);
  button->setObjectName(QStringLiteral("start") + entry->objectName());
  button->setIconSize({kStartIconPx, kStartIconPx});
  button->setFlat(true);
  button->setStyleSheet(QStringLiteral("text-align: left; padding: 5px;"));
  button->setToolTip(entry->statusTip());
  connect(button, &QPushButton::clicked, entry, &QAction::trigger);
  layout()->addWidget(button);
  return button;
}

void StartPage::Follow() {
  const bool isEmpty = program_.Current.FileName.empty() &&
                       program_.Current.Record.NumTempLevels() == 0 &&
                       program_.Current.Record.NumWindLevels() == 0;
  if (isEmpty && layout() == nullptr) Build();
  setVisible(isEmpty);
  if (!isEmpty) return;
  bool hasRecent = false;
  for (const RecentButton& recent : recent_) {
    // Two ampersands stand for one in a caption.
    recent.Button->setText(recent.Entry->text());
    recent.Button->setToolTip(recent.Entry->statusTip());
    recent.Button->setVisible(recent.Entry->isVisible());
    hasRecent = hasRecent || recent.Entry->isVisible();
  }
  recentHead_->setVisible(hasRecent);
}

}  // namespace vexa
