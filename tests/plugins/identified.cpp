// A plug-in with the identification variables that the build asks for.
extern "C" {
#ifdef DISPLAY_NAME
__attribute__((visibility("default"))) char const* _KeldaSODisplayName = DISPLAY_NAME;
#endif
#ifdef PLUGIN_VERSION
__attribute__((visibility("default"))) char const* _KeldaSOVersion = PLUGIN_VERSION;
#endif
__attribute__((visibility("default"))) int CommonAPITestEntryPoint() {
    return 42;
}
}
