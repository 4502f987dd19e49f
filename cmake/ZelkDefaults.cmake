# Defaults of settings that CMake has defaults of its own for, from project() on: include this before. What the user sets
# counts.
set(CMAKE_BUILD_TYPE Release CACHE STRING "Release or Debug")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2" CACHE STRING
    "Flags of release builds")
