# Stands in for a Mac's toolchain, so that the Mac's build can be configured and compiled where there is none. Its flags
# come from script/check-macos, which links what comes of it.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 22.1.0)
set(CMAKE_SYSTEM_PROCESSOR ${CMAKE_OSX_ARCHITECTURES})
set(CMAKE_OSX_SYSROOT "")
find_program(compiler clang++ REQUIRED)
get_property(known GLOBAL PROPERTY CMAKE_CXX_KNOWN_FEATURES)
foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${compiler})
  set(CMAKE_${language}_COMPILER_FORCED TRUE)
  set(CMAKE_${language}_COMPILER_ID Clang)
  set(CMAKE_${language}_COMPILER_VERSION 14.0.6)
  set(CMAKE_${language}_STANDARD_COMPUTED_DEFAULT 14)
  set(CMAKE_${language}_COMPILE_FEATURES ${known})
endforeach()
find_program(CMAKE_AR llvm-ar REQUIRED)
find_program(CMAKE_RANLIB llvm-ranlib REQUIRED)
foreach(tool INSTALL_NAME_TOOL LIPO)
  set(CMAKE_${tool} /bin/false)
endforeach()
set(CMAKE_OTOOL ${CMAKE_CURRENT_LIST_DIR}/otool)

# Qt's packages of this machine stand in for those of a Mac: the same targets and commands.
file(GLOB Qt6_DIR /usr/lib/*/cmake/Qt6)
get_filename_component(CMAKE_PREFIX_PATH ${Qt6_DIR} DIRECTORY)
# What they look for with a test program.
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)
set(HAVE_STDATOMIC TRUE)
foreach(part gl_LIBRARY glu_LIBRARY INCLUDE_DIR)
  set(OPENGL_${part} /System/Library/Frameworks/OpenGL.framework)
endforeach()
# Its folder would be searched before that of the C++ library.
set(CMAKE_DISABLE_FIND_PACKAGE_Vulkan TRUE)
