#ifndef COMMONAPI_TOOLS_VALUES_H
#define COMMONAPI_TOOLS_VALUES_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// What there is to say about a value, or null.
using ValueRemark = std::function<char const*(std::string_view)>;
using ValueConversion = std::function<std::string_view(std::string_view)>;

/// Writes to standard output, a line each, what `convert` makes of the arguments or, if there are
/// none, of the lines of standard input, which may be of any number. Of a line of more than 4 MiB
/// it gets that much. A value for which it throws `std::runtime_error` is reported with its number,
/// and the others go on.
///
/// What `remark` says of a value, if not null, is reported too, but each remark once.
///
/// Returns false if a value was refused; throws `std::runtime_error` if the input cannot be read or
/// the output cannot be written.
bool ConvertValues(std::vector<std::string> const& arguments, ValueRemark const& remark,
                   ValueConversion const& convert);

#endif
