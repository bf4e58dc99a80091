// An HTTP/1.1 answer as it comes in from the connection, piece by piece (RFC 9112). It is whole when
// its transfer has ended as it was announced: after the last chunk, after as many bytes as were
// told, and, packed, with the packing's own check. The toolkit takes a connection that ends early
// for the end of the answer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa::download {

class HttpAnswer {
 public:
  enum class State { ComingIn, Whole, Cut, Damaged, TooLarge };

  /// most  bytes of the body, packed and unpacked
  explicit HttpAnswer(std::size_t most) : most_(most) {}

  /// More bytes of the connection. Once the answer is no more ComingIn, nothing changes.
  State Take(std::string_view bytes);
  /// The connection has ended.
  State Close();

  State Now() const { return state_; }
  int Status() const { return status_; }
  /// A field of the head by its name, capitals or not; empty when there is none.
  std::string_view Field(std::string_view name) const;
  /// Bytes of the body so far, and how many the server has announced.
  std::size_t Received() const { return body_.size(); }
  std::optional<std::size_t> Announced() const { return length_; }
  /// Of a whole answer, unpacked.
  const std::string& Body() const { return body_; }

 private:
  enum class Part { Head, Counted, ChunkSize, Chunk, ChunkEnd, Trailer, ToTheEnd };

  bool Step();
  bool TakeHead();
  void BeginBody();
  bool TakeBytes();
  bool TakeChunkSize();
  std::optional<std::string_view> TakeLine();
  bool End(State state);
  bool Finish();

  std::size_t most_;
  State state_ = State::ComingIn;
  Part part_ = Part::Head;
  std::string waiting_{};  // bytes that are not yet understood
  std::size_t at_ = 0;     // of them those that were
  std::size_t headBytes_ = 0;
  int status_ = 0;
  std::vector<std::pair<std::string, std::string>> fields_{};
  std::string body_{};
  std::optional<std::size_t> length_{};
  std::size_t left_ = 0;  // of the body or of the chunk
};

}  // namespace vexa::download
