#pragma once

#include <functional>
#include <string>
#include <vector>

/// Writes to standard output, a line each, what `convert` makes of the arguments or, if there are
/// none, of the lines of standard input, which may be of any number. A value for which it throws
/// `std::runtime_error` is reported with its number, and the others go on.
///
/// Returns false if a value was refused; throws `std::runtime_error` if the output cannot be
/// written.
bool ConvertValues(std::vector<std::string> const& arguments,
                   std::function<std::string(std::string const&)> const& convert);
