#ifndef COMMONAPI_TYPES_EARLY_STATIC_H
#define COMMONAPI_TYPES_EARLY_STATIC_H

/// For process-wide objects that clients use from constructors and destructors of their own static
/// objects: in a static link too, ours are made first and destroyed last.
#define COMMONAPI_EARLY_STATIC [[gnu::init_priority(101)]]

#endif
