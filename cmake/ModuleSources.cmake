# There is one list of the module's sources, that of the device's build.
set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/BUILD.gn")
file(STRINGS "${PROJECT_SOURCE_DIR}/BUILD.gn" ZELK_MODULE_SOURCES REGEX "\\.cpp\",$")
list(TRANSFORM ZELK_MODULE_SOURCES REPLACE "^ *\"(.*)\",$" "\\1")

# Returns those whose names start with a prefix such as "napi/" or "config/config_info".
function(zelk_module_sources result beginning)
    set(sources "${ZELK_MODULE_SOURCES}")
    list(FILTER sources INCLUDE REGEX "^${beginning}")
    list(TRANSFORM sources PREPEND "${PROJECT_SOURCE_DIR}/")
    set(${result} "${sources}" PARENT_SCOPE)
endfunction()
