#include "app/chrome.h"

#include <QApplication>
#include <QColor>
#include <QPalette>
#include <QStyle>
#include <utility>

namespace vexa {
namespace {

// Greys with at least 7 : 1 between a text and its ground, 3 : 1 for what is disabled.
QPalette DarkPalette() {
  constexpr QRgb kWindow = 0xff2a2a2c, kBase = 0xff1b1b1d, kButton = 0xff38383b;
  constexpr QRgb kText = 0xffe8e8e8, kDisabled = 0xff8a8a8d, kAccent = 0xff3f72c4;
  QPalette dark{QColor(kButton), QColor(kWindow)};
  const std::pair<QPalette::ColorRole, QRgb> roles[] = {
      {QPalette::Window, kWindow},      {QPalette::WindowText, kText},
      {QPalette::Base, kBase},          {QPalette::AlternateBase, 0xff232326},
      {QPalette::Text, kText},          {QPalette::Button, kButton},
      {QPalette::ButtonText, kText},    {QPalette::BrightText, 0xffffffff},
      {QPalette::ToolTipBase, kButton}, {QPalette::ToolTipText, kText},
      {QPalette::Highlight, kAccent},   {QPalette::HighlightedText, 0xffffffff},
      {QPalette::Link, 0xff8ab4f8},     {QPalette::PlaceholderText, kDisabled},
      {QPalette::Light, 0xff55555a},    {QPalette::Midlight, 0xff47474b},
      {QPalette::Mid, 0xff222224},      {QPalette::Dark, 0xff161618},
      {QPalette::Shadow, 0xff000000}};
  for (const auto& [role, color] : roles) dark.setColor(role, QColor(color));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(kDisabled));
  }
  return dark;
}

}  // namespace

void FollowScreenColor(const ViewSettings& options) {
  static const QPalette usual = QApplication::palette();
  const QPalette wanted = options.Screen == ScreenColor::Black ? DarkPalette() : usual;
  if (QApplication::palette() != wanted) QApplication::setPalette(wanted);
}

}  // namespace vexa
