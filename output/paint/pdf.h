// PDF documents that are the same bytes for the same pages, whenever and wherever they are made.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/fault.h"

class QPdfWriter;

namespace vexa::paint {

/// Resolution of PDF documents, dots per inch.
inline constexpr int kPdfDpi = 1200;

/// The bytes of the document that the function paints; its fault is handed on.
Outcome<std::string> MakePdf(const std::function<std::optional<Fault>(QPdfWriter&)>& paint);

}  // namespace vexa::paint
