#ifndef TARN_FRAME_EXPORT_H
#define TARN_FRAME_EXPORT_H

/// @file
/// Linkage of exported names.
///
/// `TARN_API` marks what the module `Tarn_base_math` exports, `TARN_HOST_API` what the host library
/// publishes. Everything is compiled with hidden visibility, so a name without one of the two marks
/// stays inside its library.

/// @def TARN_EXPORTED
/// A name that the library being compiled publishes.
/// @def TARN_IMPORTED
/// A name that another library publishes.
/// @def TARN_API
/// A name of the module.
/// @def TARN_HOST_API
/// A name of the host library.

#if defined(_WIN32)
#define TARN_EXPORTED __declspec(dllexport)
#define TARN_IMPORTED __declspec(dllimport)
#else
#define TARN_EXPORTED __attribute__((visibility("default")))
#define TARN_IMPORTED __attribute__((visibility("default")))
#endif

#if defined(TARN_BUILDING_MODULE)
#define TARN_API TARN_EXPORTED
#else
#define TARN_API TARN_IMPORTED
#endif

#if defined(TARN_BUILDING_HOST)
#define TARN_HOST_API TARN_EXPORTED
#else
#define TARN_HOST_API TARN_IMPORTED
#endif

#endif
