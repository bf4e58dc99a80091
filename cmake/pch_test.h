// What nearly every test includes.
#pragma once

#include <gtest/gtest.h>

#include "pch_std.h"
