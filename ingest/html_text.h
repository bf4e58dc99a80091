// Sounding listings come wrapped in web pages: takes the page away and leaves the text.
#pragma once

#include "core/source_text.h"

namespace vexa::ingest {

/// True for a text with the tags of a web page near its start.
bool IsHtml(const SourceText& source);

/// The text without tags and with the common entities decoded. Lines keep their numbers and the
/// columns of preformatted text.
SourceText WithoutTags(const SourceText& source);

}  // namespace vexa::ingest
