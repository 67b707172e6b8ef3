// A tiny loadable module for the DllOpen tests.
extern "C" __attribute__((visibility("default"))) int pv_test_answer() {
    return 42;
}
