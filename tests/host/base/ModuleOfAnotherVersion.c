// What an update that stopped halfway leaves behind.
const char* VBlurModuleVersion(void);

const char* VBlurModuleVersion(void) {
  return "0.0.1";
}
