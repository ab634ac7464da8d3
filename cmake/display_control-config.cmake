include(CMakeFindDependencyMacro)
find_dependency(Threads)
find_dependency(LibXml2)
include(${CMAKE_CURRENT_LIST_DIR}/targets.cmake)
