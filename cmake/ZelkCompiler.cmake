# Settings that every target of this build shares.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# All artefacts are in one folder and find each other there, in the build tree as in the package.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
# The path is the same in the build and when installed: CMake would otherwise pad it with colons, and an empty element
# means the current working directory.
set(CMAKE_INSTALL_RPATH "$ORIGIN")
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

add_link_options("LINKER:-z,relro,-z,now")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
                    -Woverloaded-virtual -Wold-style-cast -Wcast-qual)

# The flags that the platform's build adds for every component.
if(ZELK_LIKE_DEVICE)
    # Without it, -Wthread-safety does not know libc++'s locks.
    add_compile_definitions(_LIBCPP_ENABLE_THREAD_SAFETY_ANNOTATIONS)
    add_compile_options(-Wimplicit-fallthrough -Wthread-safety -Wno-missing-field-initializers -Wno-unused-parameter
                        -Wno-deprecated-declarations)
endif()

# A shared object with a unique symbol can never be unloaded. Node.js unloads an addon with the last environment that
# uses it and expects the static constructor to run again at the next load.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fno-gnu-unique)
endif()

if(ZELK_SANITIZE)
    add_compile_options(-fsanitize=${ZELK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZELK_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        add_link_options(-shared-libsan)
    endif()
endif()

# Makes `target` export only what the version script says. The script's path is relative to where Ninja links, because
# CMake mangles a `$` in an option.
function(zelk_version_script target script)
    file(RELATIVE_PATH from_build "${CMAKE_BINARY_DIR}" "${script}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${from_build}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS "${script}")
endfunction()
