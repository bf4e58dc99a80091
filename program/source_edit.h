// The source text of the sounding in work as an editor has it: Unix lines of UTF-8, whatever bytes
// and line ends the file has, and back to these without a change to what was not edited.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "program/program.h"

namespace vexa {

struct EditableText {
  std::string Name{};    // of the file, for the caption
  std::string Text{};    // UTF-8, lines ending in LF
  std::string Before{};  // bytes ahead of the text and behind it, which stay
  std::string After{};
  bool IsSingleByte = false;  // the file holds one byte a character (Latin-1), not UTF-8
  bool EndsInCrLf = false;
};

/// A file's bytes as text to edit. Fault 1209 for bytes that are no text.
Outcome<EditableText> TextToEdit(std::string_view bytes, std::string_view name);

/// The bytes with the edited text between those around it; fault 380 when it has a character that
/// the file cannot hold.
Outcome<std::string> BytesOf(const EditableText& original, std::string_view edited);

/// The source of the sounding in work, unpacked: of a file with several soundings its part, where
/// the format tells it from the others, with what stands around it in its piece of a long file. The
/// entire file may be edited only when it is not packed. Faults as ReadFile and TextToEdit.
Outcome<EditableText> SourceToEdit(const Program& program, bool entireFile);

/// What the text to edit does not tell: edits that are not saved, and another program's writing.
std::string SourceRemark(const Program& program);

/// Decodes the edited source of the sounding in work and takes the sounding as a step of the
/// history; the file stays. The fault of the decoder is not reported: the editor shows it.
[[nodiscard]] std::optional<Fault> AdoptSource(Program& program, const std::string& bytes,
                                               Changes& changes);

/// Writes the edited entire file over it and loads the sounding from it anew, if it can be
/// decoded; the file stays as it was otherwise, and when it was written by another program that the
/// user does not want replaced.
[[nodiscard]] std::optional<Fault> SaveSource(Program& program, const std::string& bytes,
                                              Changes& changes);

}  // namespace vexa
