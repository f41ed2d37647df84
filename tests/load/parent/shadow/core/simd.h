#error "a header of the parent project stands in the place of one of the library"
