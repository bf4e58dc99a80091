#include "download/net/network.h"

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

class NoNetwork : public Fetcher {
 public:
  FetchResult Fetch(const std::string&) override {
    return {.End = FetchEnd::NoAnswer,
            .Failed = Fault{kFaultDeviceUnavailable, "Fetch",
                            "the program's module for the network is missing"}};
  }
};

}  // namespace

std::unique_ptr<Fetcher> OpenNetwork(const HttpSettings& settings, const TellProgress& progress) {
  if (MakeFetcher* const make = Maker()) {
    return std::unique_ptr<Fetcher>(make(settings, progress));
  }
  return std::make_unique<NoNetwork>();
}

}  // namespace vexa::download
