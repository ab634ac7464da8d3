# Puts the page's parts together and writes them as a C++ source: cmake -DPAGE=... -DCSS=... -DJS=... -DCHART_JS=...
# -DOUT=... -P EmbedPage.cmake
file(READ "${PAGE}" page)
foreach(part CSS JS CHART_JS)
    file(READ "${${part}}" text)
    string(REPLACE "@${part}@" "${text}" page "${page}")
endforeach()
file(WRITE "${OUT}.html" "${page}")
file(READ "${OUT}.html" bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${OUT}" "#include <cstddef>\nnamespace simulator {\nextern const unsigned char kPage[];\n"
    "extern const std::size_t kPageSize;\nconst unsigned char kPage[] = {${bytes}};\n"
    "const std::size_t kPageSize = sizeof kPage;\n}  // namespace simulator\n")
