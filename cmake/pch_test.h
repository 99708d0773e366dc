#pragma once
// What nearly every test includes: compiled once.
#include "pch_qt.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <thread>
