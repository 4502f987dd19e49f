# Defaults of settings to which project() would give CMake's own: include this before it. What the user sets counts.
set(CMAKE_BUILD_TYPE Release CACHE STRING "Release or Debug")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2" CACHE STRING
    "Flags of release builds")
