#pragma once

// Calls into a shared library that write nothing, with the signature of `LogMessage`.

void EmptyCall(int level, char const* module, char const* text);
void SpdlogCheck(int level, char const* module, char const* text);
void GlogCheck(int level, char const* module, char const* text);
