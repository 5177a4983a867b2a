// The precompiled headers of the tests are a part of some target: of the one with this source.
