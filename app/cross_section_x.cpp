#include "app/cross_section_x.h"

#include <algorithm>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/qt_text.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "ingest/source_header.h"
#include "program/section_map.h"

namespace vexa {
namespace {

using crosssection::Column;

constexpr int kOrderRole = Qt::UserRole;

// All that is loaded, in the order in which it was given.
std::vector<const Column*> LoadedOf(const SectionView& view) {
  std::vector<const Column*> loaded;
  for (const auto* columns : {&view.Of.Columns, &view.Aside}) {
    for (const Column& column : *columns) {
      if (!column.IsInterpolated) loaded.push_back(&column);
    }
  }
  std::ranges::stable_sort(loaded, {}, [](const Column* column) { return column->Order; });
  return loaded;
}

std::string SpanText(const std::optional<ObservationTime>& time) {
  return time ? IsoTimeText(*time) : std::string();
}

}  // namespace

CrossSectionX::CrossSectionX(Program& program, std::function<void()> changed,
                             std::function<void()> save, QWidget* parent)
    : QDialog(parent), program_(program), changed_(std::move(changed)) {
  setObjectName(QStringLiteral("CrossSectionX"));
  setWindowTitle(QStringLiteral("Soundings of the Cross-Section"));
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("lstSoundings"));
  list_->setUniformItemSizes(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_, 1);
  auto* span = new QFormLayout;
  const auto line = [&](const char* name, const char* caption) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setPlaceholderText(QStringLiteral("2024-03-05T12:00, or empty"));
    span->addRow(QString::fromLatin1(caption), edit);
    return edit;
  };
  from_ = line("txtFrom", "&From");
  until_ = line("txtUntil", "&To");
  layout->addLayout(span);
  told_ = new QLabel(this);
  told_->setObjectName(QStringLiteral("lblCount"));
  told_->setTextFormat(Qt::PlainText);
  told_->setWordWrap(true);
  layout->addWidget(told_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  const auto button = [&](const char* name, const char* caption, std::function<void()> does) {
    auto* made = buttons->addButton(QString::fromLatin1(caption), QDialogButtonBox::ActionRole);
    made->setObjectName(QString::fromLatin1(name));
    connect(made, &QPushButton::clicked, this, std::move(does));
    return made;
  };
  button("cmdApply", "A&pply", [this] { Apply(); })->setDefault(true);
  button("cmdAll", "&All", [this] { CheckAll(true); });
  button("cmdNone", "&None", [this] { CheckAll(false); });
  button("cmdSaveDataSet", "&Save DataSet...", std::move(save));
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  layout->addWidget(buttons);
  resize(520, 480);
  ShowAll();
}

void CrossSectionX::ShowAll() {
  const SectionView& view = SectionViewOf(program_);
  list_->clear();
  for (const Column* column : LoadedOf(view)) {
    const std::string time = crosssection::TimeText(column->Sounding.Time);
    const ObservationTime& at = column->Sounding.Time;
    const std::string year = at.Known() ? Mask(at.Year, "0000") + "-" : std::string();
    auto* item =
        new QListWidgetItem(ToQString(PadRight(time.empty() ? "time not known" : year + time, 20) +
                                      std::string(Trim(column->Sounding.StationTitle))),
                            list_);
    item->setData(kOrderRole, column->Order);
    item->setToolTip(ToQString(column->Source));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(view.Out.contains(column->Order) ? Qt::Unchecked : Qt::Checked);
  }
  from_->setText(ToQString(SpanText(view.Span.From)));
  until_->setText(ToQString(SpanText(view.Span.Until)));
  const auto given = std::ranges::count(view.Of.Columns, false, &Column::IsInterpolated);
  told_->setText(ToQString(Shortest(static_cast<int>(given)) + " of " + Shortest(list_->count()) +
                           " soundings in the section, about " +
                           Mask(static_cast<double>(BytesOf(view)) / 1e6, "####0.0") +
                           " MB in memory.  " + view.Why));
}

void CrossSectionX::CheckAll(bool on) {
  for (int row = 0; row < list_->count(); ++row) {
    list_->item(row)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
  }
}

std::optional<ObservationTime> CrossSectionX::TimeIn(QLineEdit& line, bool& isWrong) {
  const std::string text = line.text().trimmed().toStdString();
  if (text.empty()) return std::nullopt;
  const std::optional<ObservationTime> time = ingest::ParseIsoTime(text);
  if (time) return time;
  isWrong = true;
  line.setFocus();
  line.selectAll();
  told_->setText(ToQString("\"" + text + "\" is no time like 2024-03-05T12:00."));
  return std::nullopt;
}

void CrossSectionX::Apply() {
  bool isWrong = false;
  const auto from = TimeIn(*from_, isWrong);
  const auto until = isWrong ? std::nullopt : TimeIn(*until_, isWrong);
  if (isWrong) return;
  std::set<int> out;
  for (int row = 0; row < list_->count(); ++row) {
    const QListWidgetItem& item = *list_->item(row);
    if (item.checkState() != Qt::Checked) out.insert(item.data(kOrderRole).toInt());
  }
  SectionViewOf(program_).Out = std::move(out);
  commands::PickSpan(program_, from, until);
  changed_();
  ShowAll();
}

}  // namespace vexa
