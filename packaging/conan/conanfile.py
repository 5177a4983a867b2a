"""Untried: a recipe for Conan 2. `conan create packaging/conan` in a checkout."""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class UtillibraryRecipe(ConanFile):
    name = "utillibrary"
    version = "1.0.0"
    description = "Exact scalars, times, strings and platform services for C++ hosts on 64-bit Linux"
    package_type = "shared-library"
    settings = "os", "compiler", "build_type", "arch"

    def export_sources(self):
        checkout = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "cmake/*", "utillibrary/*", "docs/kept.md", "gdb/*"):
            copy(self, pattern, checkout, self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        CMakeToolchain(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.libs = ["utillibrary"]
        self.cpp_info.set_property("cmake_file_name", "utillibrary")
        self.cpp_info.set_property("cmake_target_name", "utillibrary::utillibrary")
        self.cpp_info.set_property("pkg_config_name", "utillibrary")
