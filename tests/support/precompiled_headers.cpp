// The one source of the target that owns the test programs' shared precompiled header
// (GoogleTest and GoogleMock); it has nothing of its own to compile.
