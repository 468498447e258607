// Carries the precompiled headers of the tests, which need a source to be compiled with.
