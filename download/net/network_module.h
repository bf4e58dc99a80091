// What the module of the net has for the program: one function, found by its name.
#pragma once

#include "download/net/network.h"

/// A new HttpFetcher, which the caller owns.
extern "C" vexa::download::Fetcher* VexaHttpFetcher(const vexa::download::HttpSettings& settings,
                                                    const vexa::download::TellProgress& progress);
