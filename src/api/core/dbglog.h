#pragma once

#include <string>

// The text of a function in the platform's trace lines: "category: function".
std::string dbglog_scopedFunction(std::string const& function, std::string const& category);
