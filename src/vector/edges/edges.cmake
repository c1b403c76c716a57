# The texts of the library, compiled in; see library/README.md.
file(GLOB edge_texts CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/library/[0-9][0-9]-*.txt)
list(SORT edge_texts)
orvin_embed_lines(orvin_vector kEdgeLibraryText ${edge_texts})
orvin_embed_lines(orvin_vector kSphereText ${CMAKE_CURRENT_LIST_DIR}/icons/sphere.txt)
orvin_embed_lines(orvin_vector kLightIconText ${CMAKE_CURRENT_LIST_DIR}/icons/lightIcon.txt)
