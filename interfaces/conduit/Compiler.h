#pragma once  // self-contained; C++17

/// Every macro that hides a difference between compilers.
///
/// CONDUIT_EXPORT  exports a function from the library being built.
/// CONDUIT_IMPORT  imports a function from a linked library.
/// CONDUIT_PRINTF  makes the compiler check arguments against a printf format:
///                 the 1-based positions of the format and of the first
///                 argument, `this` counted.
/// CONDUIT_APART   prevents inlining: for a function that is rarely called, or needs
///                 much stack, inside one that is often called.
/// CONDUIT_DESTRUCTOR_SLOT
///                 declares an interface's destructor in exactly one vtable slot.
///                 Visual C++ gives a virtual destructor one slot: a function that
///                 takes flags (bit 0: also free the memory) and returns the object.
///                 Other compilers use two slots. Hosts on Windows are built with
///                 Visual C++, so there the other compilers declare that function
///                 explicitly. A class that implements the interface derives from
///                 `Implements` (Implements.h), which defines the function where
///                 CONDUIT_DESTRUCTOR_IS_OPERATION is defined.

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
