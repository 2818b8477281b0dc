#ifndef COMMONAPI_BENCH_RUN_TIME_CHECKS_H
#define COMMONAPI_BENCH_RUN_TIME_CHECKS_H

// Calls into a shared library that write nothing, with the signature of `LogMessage`.

void EmptyCall(int level, char const* module, char const* text);
void SpdlogCheck(int level, char const* module, char const* text);
void GlogCheck(int level, char const* module, char const* text);

#endif
