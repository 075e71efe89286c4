/* The rest of a program whose main() lies in an archive. */
typedef int something_for_the_compiler;
