/* The whole code of the benchmark's icon libraries: they are resources only and do nothing when loaded. */
int __stdcall DllMainCRTStartup(void* module, unsigned long reason, void* reserved) {
  (void)module, (void)reason, (void)reserved;
  return 1;
}
