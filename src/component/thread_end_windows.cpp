// Per-thread objects of the component on Windows: they end with their thread, or with the component
// where that is unloaded first.

extern "C" {

// Of the compiler's start-up code: runs the destructors when the thread, or the module, goes.
int __mingw_cxa_thread_atexit(void (*destroy)(void*), void* object, void* module);

// Stands in for the C++ library's own, to which the compiler hands destructors of thread_local
// objects. That one holds the module loaded until the thread ends and lets go of it then from code
// inside the module: a component that a thread has used could never be unloaded before the thread
// ends, and a thread whose hold was the last one would not come to its end.
int __cxa_thread_atexit(void (*destroy)(void*), void* object, void* module) {
  return __mingw_cxa_thread_atexit(destroy, object, module);
}

}  // extern "C"
