#include "download/net/network.h"

#include <utility>

#include "core/late_library.h"
#include "download/net/network_module.h"

namespace vexa::download {
namespace {

using MakeFetcher = decltype(VexaHttpFetcher);

#ifdef VEXA_NETWORK_MODULE
MakeFetcher* Maker() {
  static const LateLibrary kModule(VEXA_NETWORK_MODULE);
  return kModule.Find<MakeFetcher>("VexaHttpFetcher");
}
#else
MakeFetcher* Maker() {
  return &VexaHttpFetcher;
}
#endif

class NoFetcher : public Fetcher {
 public:
  explicit NoFetcher(Fault why) : why_(std::move(why)) {}
  FetchResult Fetch(const std::string&) override {
    return {.End = FetchEnd::NoAnswer, .Failed = why_};
  }

 private:
  Fault why_;
};

}  // namespace

std::unique_ptr<Fetcher> NoNetwork(Fault why) {
  return std::make_unique<NoFetcher>(std::move(why));
}

std::unique_ptr<Fetcher> OpenNetwork(const HttpSettings& settings, const TellProgress& progress) {
  if (MakeFetcher* const make = Maker()) {
    return std::unique_ptr<Fetcher>(make(settings, progress));
  }
  return NoNetwork(
      Fault{kFaultDeviceUnavailable, "Fetch", "the program's module for the network is missing"});
}

}  // namespace vexa::download
