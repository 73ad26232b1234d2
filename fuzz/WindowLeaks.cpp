// What the window system's libraries keep to the end of a program is no leak of ours.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libglib\nleak:libdbus\n";
}

extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}
