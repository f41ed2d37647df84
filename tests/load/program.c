/* A program that is linked with the library. */
#include "exercise.h"

int main(void) {
#define ADDRESS(name) name,
    const Library library = {ZPP_USED(ADDRESS)};
    return exercise(&library);
}
