#include "program/source_edit.h"

#include <utility>
#include <vector>

#include "core/files.h"
#include "core/utf8.h"
#include "ingest/archive.h"
#include "program/edit_commands.h"
#include "program/listed_soundings.h"
#include "sounding/sounding_walk.h"

namespace vexa {
namespace {

// Empty when a character lies beyond Latin-1.
std::optional<std::string> SingleBytesFromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    const auto first = static_cast<unsigned char>(text.front());
    if (length == 1) {
      bytes += text.front();
    } else if (length == 2 && first <= 0xC3) {
      bytes += static_cast<char>(((first & 0x03) << 6) | (text[1] & 0x3F));
    } else {
      return std::nullopt;
    }
    text.remove_prefix(length);
  }
  return bytes;
}

// Where a line begins, 1-based; the end for lines behind the last.
std::size_t BeginOfLine(std::string_view bytes, int line) {
  std::size_t at = 0;
  for (int i = 1; i < line && at < bytes.size(); ++i) {
    const std::size_t end = bytes.find('\n', at);
    if (end == std::string_view::npos) return bytes.size();
    at = end + 1;
  }
  return at;
}

// The lines of one sounding of several, with the rest of the file around them.
Outcome<EditableText> PartToEdit(const SourceText& source, const ingest::SourceEntry& entry,
                                 std::string_view name) {
  const std::string_view bytes = source.Bytes();
  const std::size_t from = BeginOfLine(bytes, entry.FirstLine);
  const std::size_t to = entry.EndLine > 0 ? BeginOfLine(bytes, entry.EndLine) : bytes.size();
  Outcome<EditableText> part = TextToEdit(bytes.substr(from, to - from), name);
  if (!part) return part;
  part.Value().Before = bytes.substr(0, from);
  part.Value().After = bytes.substr(to);
  return part;
}

// The sounding in work with the text that holds it: of a long file a piece, of an archive a member.
struct TextInWork {
  SoundingSource Source;
  ingest::SoundingPlace Sounding{};
};

Outcome<TextInWork> OpenTextInWork(const Program& program) {
  const int index = program.Doc.IndexInFile();
  Outcome<SoundingWalk::Place> place = SoundingWalk(program.Current.FilePath()).Take(index);
  if (!place) return place.Error();
  TextInWork text{std::move(place.Value().Source)};
  text.Sounding = ingest::PlaceOf(text.Source.Text(), index - place.Value().Before);
  return text;
}

// The edited text, a file's whole or that in work, under the name that its file has in an archive,
// which may tell the date.
Outcome<SoundingRecord> Decode(Program& program, const std::string& bytes, bool entireFile) {
  int index = program.Doc.IndexInFile();
  SourceText edited(program.Current.FileName, bytes);
  if (const Outcome<TextInWork> onDisk = OpenTextInWork(program)) {
    const ingest::SoundingPlace& place = onDisk.Value().Sounding;
    edited = SourceText(place.Text->Name(), bytes);
    edited.SetWrittenOn(place.Text->WrittenOn());
    if (!entireFile) index = place.Index;
  }
  Loading loading = SoundingSource(std::move(edited)).Load(index, PolicyOf(program));
  if (loading.Failed) return *loading.Failed;
  return std::move(loading.Sounding->Record);
}

}  // namespace

Outcome<EditableText> TextToEdit(std::string_view bytes, std::string_view name) {
  const bool isPacked = bytes.starts_with("\x1F\x8B") || bytes.starts_with("PK\x03\x04");
  if (isPacked || bytes.starts_with("BUFR") || bytes.find('\0') != std::string_view::npos) {
    return Fault{kFaultFormat, "TextToEdit",
                 std::string(name) + " holds no text that could be edited"};
  }
  EditableText text{.Name = std::string(name), .IsSingleByte = !IsUtf8(bytes)};
  const std::string whole = text.IsSingleByte ? Utf8FromLatin1(bytes) : std::string(bytes);
  text.EndsInCrLf = whole.find("\r\n") != std::string::npos;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (whole[i] != '\r') {
      text.Text += whole[i];
    } else if (i + 1 == whole.size() || (whole[i + 1] != '\n' && whole[i + 1] != '\r')) {
      text.Text += '\n';
    }
  }
  return text;
}

Outcome<std::string> BytesOf(const EditableText& original, std::string_view edited) {
  std::string text;
  for (const char c : edited) {
    if (c == '\n' && original.EndsInCrLf) text += '\r';
    text += c;
  }
  if (!original.IsSingleByte) return original.Before + text + original.After;
  if (const std::optional<std::string> bytes = SingleBytesFromUtf8(text)) {
    return original.Before + *bytes + original.After;
  }
  return Fault{kFaultInvalidValue, "BytesOf",
               original.Name + " cannot hold every character that was typed"};
}

Outcome<EditableText> SourceToEdit(const Program& program, bool entireFile) {
  const std::string& name = program.Current.FileName;
  if (entireFile) {
    const Outcome<std::string> bytes = ReadFile(program.Current.FilePath());
    if (!bytes) return bytes.Error();
    return TextToEdit(bytes.Value(), name);
  }
  const Outcome<TextInWork> inWork = OpenTextInWork(program);
  if (!inWork) return inWork.Error();
  const ingest::SoundingPlace& place = inWork.Value().Sounding;
  const std::vector<ingest::SourceEntry> entries = ingest::ListSoundings(*place.Text);
  const auto index = static_cast<std::size_t>(place.Index);
  if (entries.size() > 1 && index < entries.size() && entries[index].FirstLine > 0) {
    return PartToEdit(*place.Text, entries[index], name);
  }
  return TextToEdit(place.Text->Bytes(), name);
}

std::string SourceRemark(const Program& program) {
  std::string remark;
  if (program.Doc.ChangedOnDisk()) {
    remark = program.Current.FileName + " was changed by another program since it was opened. ";
  }
  if (program.Doc.IsAltered()) {
    remark += "This is the text of the file: what was edited and not saved is not in it.";
  }
  return remark;
}

std::optional<Fault> AdoptSource(Program& program, const std::string& bytes, Changes& changes) {
  Outcome<SoundingRecord> record = Decode(program, bytes, false);
  if (!record) return record.Error();
  changes = AdoptEdit(program, std::move(record.Value()), "edit source data");
  return std::nullopt;
}

std::optional<Fault> SaveSource(Program& program, const std::string& bytes, Changes& changes) {
  Outcome<SoundingRecord> record = Decode(program, bytes, true);
  if (!record) return record.Error();
  if (!MayReplaceOnDisk(program)) {
    return Fault{kFaultPathAccess, "SaveSource",
                 program.Current.FileName + " stays as the other program has written it"};
  }
  if (auto fault = SaveFile(program.Current.FilePath(), bytes)) return fault;
  program.Doc.Rewritten(std::move(record.Value()), "edit source file");
  changes = {.Sounding = true};
  return std::nullopt;
}

}  // namespace vexa
