#pragma once

/// Exports a plug-in's entry points by their exact names.
#define VAK_PLUGIN_EXPORT extern "C" __declspec(dllexport)
