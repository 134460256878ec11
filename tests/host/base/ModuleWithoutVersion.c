// A library that is none of ours.
int ForeignFunction(void);

int ForeignFunction(void) {
  return 1;
}
