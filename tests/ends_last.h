#ifndef COMMONAPI_TESTS_ENDS_LAST_H
#define COMMONAPI_TESTS_ENDS_LAST_H

/// Has `function` called after libCommonAPI has ended.
__attribute__((visibility("default"))) void CallAtTheEnd(void (*function)());

#endif
