#include "app/cloud_editor.h"

#include <algorithm>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/edit_grid.h"
#include "app/named_controls.h"
#include "app/qt_text.h"
#include "app/remark_label.h"
#include "core/numbers.h"

namespace vexa {
namespace {

// Heights in hundreds of feet.
constexpr std::string_view kGuidance =
    "  ST    1 - 035\n  SC   15 - 065\n  NS    1 - 100\n  CU   15 - 065\n"
    "  CB    1 - 400\n  AC   65 - 230\n  AS   65 - 230\n  CI  165 - 450";

// A choice among words; one that a file brought along stays to be chosen.
QComboBox* Choice(QWidget* parent, const char* name, QStringList words, const std::string& now) {
  auto* box = new QComboBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  const QString current = ToQString(Trim(now));
  if (!words.contains(current)) words << current;
  box->addItems(words);
  box->setCurrentText(current);
  return box;
}

}  // namespace

CloudEditor::CloudEditor(const SoundingRecord& record, std::function<bool(SoundingRecord)> accepted,
                         QWidget* parent)
    : EditorDialog(parent), record_(record), accepted_(std::move(accepted)) {
  setObjectName(QStringLiteral("CloudEditor"));
  setWindowTitle(QStringLiteral("Cloud Layer Table"));
  auto* layout = new QVBoxLayout(this);
  auto* middle = new QHBoxLayout;
  layers_ = new EditGrid(LevelKind::Clouds, record, this);
  layers_->setObjectName(QStringLiteral("CloudLayers"));
  layers_->OnEdited([this] {
    // Layers that somebody enters are meant to count.
    if (mode_->currentText() == QStringLiteral("AUTO")) {
      mode_->setCurrentText(QStringLiteral("USER"));
    }
    ShowProblems();
  });
  middle->addWidget(layers_, 1);
  auto* guidance = new QLabel(ToQString(kGuidance), this);
  guidance->setObjectName(QStringLiteral("CloudGuidance"));
  guidance->setTextFormat(Qt::PlainText);
  guidance->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  guidance->setToolTip(QStringLiteral("Types with their heights in hundreds of feet"));
  middle->addWidget(guidance);
  layout->addLayout(middle, 1);

  auto* rows = new QHBoxLayout;
  const auto button = [&](const QString& caption, auto&& does) {
    auto* made = new QPushButton(caption, this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, does);
    rows->addWidget(made);
  };
  button(QStringLiteral("&Insert Row"), [this] { layers_->InsertAbove(); });
  button(QStringLiteral("Dele&te Rows"), [this] { layers_->DeleteSelected(); });
  rows->addStretch(1);
  layout->addLayout(rows);

  auto* form = new QFormLayout;
  mode_ =
      Choice(this, "CloudMode", {QStringLiteral("AUTO"), QStringLiteral("USER")}, record.CloudMode);
  option_ = Choice(this, "CloudOption",
                   {QStringLiteral("AUTO"), QStringLiteral("YES"), QStringLiteral("NO")},
                   record.CloudOption);
  form->addRow(QStringLiteral("&Layers (AUTO: from the sounding):"), mode_);
  form->addRow(QStringLiteral("&Show clouds:"), option_);
  layout->addLayout(form);

  remark_ = new RemarkLabel(this);
  remark_->setObjectName(QStringLiteral("CloudRemark"));
  layout->addWidget(remark_);
  AddOkAndCancel(*layout, this, [this] { return Apply(); });
  ShowProblems();
  resize(640, 420);
}

bool CloudEditor::Apply() {
  SoundingRecord edited = record_;
  if (const auto fault = layers_->Table().ApplyTo(edited)) {
    remark_->setText(ToQString(fault->Detail));
    return false;
  }
  edited.CloudMode = mode_->currentText().toStdString();
  edited.CloudOption = option_->currentText().toStdString();
  if (edited == record_) return true;  // nothing was changed
  if (!accepted_(std::move(edited))) return false;
  Keep();
  return true;
}

std::string CloudEditor::Typed() const {
  const QString choices = mode_->currentText() + QLatin1Char(' ') + option_->currentText();
  return layers_->Table().Copy(0, layers_->Table().Rows()) + TypingIn(*layers_) +
         choices.toStdString();
}

void CloudEditor::ShowProblems() {
  const std::vector<TableProblem>& problems = layers_->Problems();
  remark_->setText(problems.empty() ? QString()
                                    : ToQString("Row " + Shortest(problems.front().Row + 1) + ": " +
                                                problems.front().Reason));
}

}  // namespace vexa
