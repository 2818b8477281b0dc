#ifndef COMMONAPI_TYPES_PROCESSOR_H
#define COMMONAPI_TYPES_PROCESSOR_H

namespace CommonAPI::internal {

/// Whether the processor has these instructions, and the operating system saves their registers.
bool HasAvx2();
bool HasAvx512VbmiAndGfni();

}  // namespace CommonAPI::internal

#endif
