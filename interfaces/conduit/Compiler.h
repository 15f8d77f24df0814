#pragma once  // stands alone in C++17

/// Everything that compilers spell differently, in one place.
///
/// CONDUIT_EXPORT  gives a function out of the library that is being built.
/// CONDUIT_IMPORT  takes a function from a library that is linked to.
/// CONDUIT_PRINTF  lets the compiler hold arguments against a printf format:
///                 the 1-based positions of the format and of the first
///                 argument, `this` counted.
/// CONDUIT_APART   keeps a function out of those that call it: for what is seldom
///                 done, or needs much of the stack, in one that is often called.
/// CONDUIT_DESTRUCTOR_SLOT
///                 declares the destructor of an interface, in the one slot that its
///                 table has for it on every system. Visual C++ gives a virtual
///                 destructor one slot: an operation that takes flags (bit 0: also
///                 free the memory) and returns the object. Other compilers give it
///                 two, so that on Windows, where hosts are built with Visual C++,
///                 they are told of that operation. A class that implements the
///                 interface derives from Implements.h's `Implements`, which supplies
///                 it where CONDUIT_DESTRUCTOR_IS_OPERATION is defined; nothing else
///                 ever calls it.

#if defined(_WIN32)
#define CONDUIT_EXPORT __declspec(dllexport)
#define CONDUIT_IMPORT __declspec(dllimport)
#else
#define CONDUIT_EXPORT __attribute__((visibility("default")))
#define CONDUIT_IMPORT
#endif

#if defined(_MSC_VER) && !defined(__clang__)
#define CONDUIT_APART __declspec(noinline)
#else
#define CONDUIT_APART __attribute__((noinline))
#endif

#if defined(__MINGW32__)
#define CONDUIT_PRINTF(position, first) __attribute__((format(gnu_printf, position, first)))
#elif defined(__GNUC__)
#define CONDUIT_PRINTF(position, first) __attribute__((format(printf, position, first)))
#else
#define CONDUIT_PRINTF(position, first)
#endif

#if defined(_WIN32) && !defined(_MSC_VER)
#define CONDUIT_DESTRUCTOR_IS_OPERATION
#define CONDUIT_DESTRUCTOR_SLOT(Interface)         \
  virtual void* DestroyObject(unsigned flags) = 0; \
                                                   \
 protected:                                        \
  ~Interface() = default;                          \
                                                   \
 public:                                           \
  static_assert(true)
#else
#define CONDUIT_DESTRUCTOR_SLOT(Interface) virtual ~Interface() = default
#endif
