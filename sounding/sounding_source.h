// A file or a server's answer, opened once: what it is is found once however many of its soundings
// are loaded.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/fault.h"
#include "core/source_text.h"
#include "ingest/source_sounding.h"
#include "sounding/analysed_sounding.h"

namespace vexa {

class SoundingSource {
 public:
  /// A file, or a sounding of it alone by the name FILE#3, for which a long file is read no farther
  /// than need be. Faults as ingest::ReadSource.
  static Outcome<SoundingSource> Open(const std::filesystem::path& file);
  /// Of bytes that came by another way, under a name of their own.
  static Outcome<SoundingSource> Open(const std::string& name, std::string bytes);
  /// Of a text that is not that of its file, as long as it is edited.
  explicit SoundingSource(SourceText text);

  SoundingSource(SoundingSource&& other) noexcept;
  SoundingSource& operator=(SoundingSource&& other) noexcept;
  ~SoundingSource();

  const SourceText& Text() const;
  /// The day of messages that state no month, see SourceText::SetWrittenOn.
  void SetWrittenOn(const std::optional<std::chrono::sys_days>& day);
  std::vector<ingest::SourceEntry> List() const;

  /// Decodes, orders and checks one of its soundings, from 0. What was noted while it was opened is
  /// among the notes of the first that is loaded. Faults as ingest::DecodeSounding.
  Loading Load(int index, const LoadPolicy& policy);

 private:
  static Outcome<SoundingSource> OpenNamed(const Source& named);

  struct Opened;
  std::unique_ptr<Opened> opened_;
};

}  // namespace vexa
