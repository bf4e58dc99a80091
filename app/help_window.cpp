#include "app/help_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextCursor>
#include <QUrl>
#include <QVBoxLayout>
#include <string>

#include "app/qt_text.h"
#include "config/catalogue.h"

namespace vexa {
namespace {

constexpr QSize kFirstSize{780, 560};
constexpr int kListWidth = 210;

QString WithTitle(const HelpTopic& topic) {
  return QStringLiteral("# ") + ToQString(topic.Title) + QStringLiteral("\n\n") +
         ToQString(topic.Text);
}

}  // namespace

HelpWindow::HelpWindow(const Program& program, QWidget* parent)
    : QDialog(parent), topics_(HelpTopics(program)) {
  setObjectName(QStringLiteral("HelpWindow"));
  setWindowTitle(QStringLiteral("VEXA Help"));
  search_ = new QLineEdit(this);
  search_->setObjectName(QStringLiteral("HelpSearch"));
  search_->setPlaceholderText(QStringLiteral("Search"));
  search_->setAccessibleName(QStringLiteral("Search the help"));
  search_->setClearButtonEnabled(true);
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("HelpTopics"));
  list_->setAccessibleName(QStringLiteral("Topics"));
  list_->setWordWrap(true);
  for (const HelpTopic& topic : topics_) list_->addItem(ToQString(topic.Title));
  text_ = new QTextBrowser(this);
  text_->setObjectName(QStringLiteral("HelpText"));
  text_->setAccessibleName(QStringLiteral("Text of the topic"));
  text_->setOpenLinks(false);

  auto* left = new QWidget(this);
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(search_);
  column->addWidget(list_, 1);
  auto* parts = new QSplitter(this);
  parts->addWidget(left);
  parts->addWidget(text_);
  parts->setStretchFactor(1, 1);
  parts->setSizes({kListWidth, kFirstSize.width() - kListWidth});
  auto* whole = new QHBoxLayout(this);
  whole->addWidget(parts);
  resize(kFirstSize);

  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row < 0) return;
    text_->setMarkdown(WithTitle(topics_[static_cast<std::size_t>(row)]));
    text_->moveCursor(QTextCursor::Start);
    if (!search_->text().isEmpty()) text_->find(search_->text());
  });
  connect(text_, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { Follow(link); });
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& words) { Search(words); });
  ShowTopic("contents");
}

void HelpWindow::ShowTopic(std::string_view id, const QString& place) {
  const HelpTopic* topic = FindTopic(topics_, id);
  search_->clear();
  list_->setCurrentRow(topic == nullptr ? 0 : static_cast<int>(topic - topics_.data()));
  if (!place.isEmpty()) text_->find(place);
}

// A window's own name counts as "window:NAME" first: a form may be called like a part of another
// window.
void HelpWindow::ShowTopicOf(const QWidget* widget) {
  QString option;
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const std::string name = widget->objectName().toStdString();
    const HelpTopic* topic = nullptr;
    if (widget->isWindow()) topic = TopicOf(topics_, "window:" + name);
    if (topic == nullptr) topic = TopicOf(topics_, name);
    if (topic != nullptr) return ShowTopic(topic->Id, option);
    const OptionRow* row = FindOption(std::string_view(name).substr(0, name.find('=')));
    if (row != nullptr && option.isEmpty()) option = ToQString(row->Caption);
  }
  ShowTopic("contents");
}

void HelpWindow::Follow(const QUrl& link) {
  ShowTopic(link.fragment().toStdString());
}

// Topics without the words leave the list; the first that has them is shown.
void HelpWindow::Search(const QString& words) {
  int first = -1;
  for (int i = 0; i < list_->count(); ++i) {
    const HelpTopic& topic = topics_[static_cast<std::size_t>(i)];
    const bool has = WithTitle(topic).contains(words, Qt::CaseInsensitive);
    list_->item(i)->setHidden(!has);
    if (has && first < 0) first = i;
  }
  if (words.isEmpty() || first < 0) return;
  list_->setCurrentRow(-1);
  list_->setCurrentRow(first);
}

HelpWindow& OpenHelp(const Program& program, QWidget* window) {
  QWidget* modal = QApplication::activeModalWidget();
  QWidget* parent = modal == nullptr ? window : modal;
  auto* help = dynamic_cast<HelpWindow*>(
      parent->findChild<QDialog*>(QStringLiteral("HelpWindow"), Qt::FindDirectChildrenOnly));
  if (help == nullptr) {
    help = new HelpWindow(program, parent);
    help->setAttribute(Qt::WA_DeleteOnClose);
  }
  help->show();
  help->raise();
  help->activateWindow();
  return *help;
}

HelpKey::HelpKey(const Program& program, QWidget* window)
    : QObject(window), program_(program), window_(window) {
  QApplication::instance()->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  const auto* widget = static_cast<QWidget*>(watched);
  OpenHelp(program_, window_).ShowTopicOf(widget);
  return true;
}

}  // namespace vexa
