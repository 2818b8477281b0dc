// A plug-in with the identification variables that the build asks for.
extern "C" {
#ifdef DISPLAY_NAME
char const* _KeldaSODisplayName = DISPLAY_NAME;
#endif
#ifdef PLUGIN_VERSION
char const* _KeldaSOVersion = PLUGIN_VERSION;
#endif
int CommonAPITestEntryPoint() {
    return 42;
}
}
