# The file name, which is the SONAME too, of a shared library that the package's other files are linked to or open. The
# loader reuses a library that the process has if the names are the same: with the version in the name, two versions of
# the package in one process each have their own, and two copies of one version share theirs. A plain file: npm leaves
# symbolic links out.
function(zelk_shared_library_name target)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME "${target}-${PROJECT_VERSION}")
endfunction()
