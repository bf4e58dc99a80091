#include "download/net/network_module.h"

#include "download/net/http_fetcher.h"

vexa::download::Fetcher* VexaHttpFetcher(const vexa::download::HttpSettings& settings,
                                         const vexa::download::TellProgress& progress) {
  return new vexa::download::HttpFetcher(settings, progress);
}
