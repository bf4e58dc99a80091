#include "output/paint/pdf.h"

#include <algorithm>
#include <QBuffer>
#include <QByteArray>
#include <QHashSeed>
#include <QPdfWriter>
#include <string_view>

namespace vexa::paint {
namespace {

/// The toolkit writes a document's fonts in the order of a hash that differs from run to run.
class SameOrder {
 public:
  SameOrder() { QHashSeed::setDeterministicGlobalSeed(); }
  ~SameOrder() { QHashSeed::resetRandomGlobalSeed(); }
  SameOrder(const SameOrder&) = delete;
  SameOrder& operator=(const SameOrder&) = delete;
};

// Blanks stand for the time at which it was made: the offsets in the document stay true.
void ForgetTime(std::string& bytes) {
  constexpr std::string_view kKey = "/CreationDate (D:";
  const std::size_t begin = bytes.find(kKey);
  if (begin == std::string::npos) return;
  const std::size_t end = bytes.find(')', begin);
  if (end == std::string::npos) return;
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
            bytes.begin() + static_cast<std::ptrdiff_t>(end) + 1, ' ');
}

}  // namespace

Outcome<std::string> MakePdf(const std::function<std::optional<Fault>(QPdfWriter&)>& paint) {
  QByteArray bytes;
  {
    const SameOrder order;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("VEXA"));
    writer.setResolution(kPdfDpi);
    if (auto fault = paint(writer)) return *fault;
  }
  std::string document = bytes.toStdString();
  ForgetTime(document);
  return document;
}

}  // namespace vexa::paint
