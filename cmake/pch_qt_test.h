// What nearly every test of a window includes.
#pragma once

#include <gtest/gtest.h>

#include "pch_qt.h"
