# project_platform_library(target NAME)
#
# What the shared libraries of platform/ have in common: lib<NAME>.so with a version that changes with the interface,
# public headers in include/<NAME>/ beside the sources, both installed. The headers are part of the interface: another
# build of the library with the same ones can take its place.
function(project_platform_library target name)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
    )
    install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(DIRECTORY include/${name} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()
