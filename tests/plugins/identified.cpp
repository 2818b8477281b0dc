extern "C" {
char const* _KeldaSODisplayName = "Sample Filter";
char const* _KeldaSOVersion = "2.1";

int CommonAPITestEntryPoint() {
    return 42;
}
}
