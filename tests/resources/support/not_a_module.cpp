// A shared library that loads fine but is no language module: it lacks the exports.
extern "C" __attribute__((visibility("default"))) int NotALanguageModule() {
  return 1;
}
