/* A library that a module brings along. */
char const* companion_name(void);
char const* companion_name(void) {
    return "genuine";
}
