// The host's viewer as tools see it: its events, the surface that it is painted on, and its controller's stack of
// tools.
//
// World units are the viewer's own coordinates, y upwards; the project defines the height of a frame in them.
// Everything here belongs to the user-interface thread.
#pragma once

#include <cstdint>

#include "Com.h"
#include "DSVariant.h"
#include "Window.h"

namespace vblur {

// A pen event: its button and its position in world units.
struct tagVWPENEVENT {
  std::int32_t button = 0;  // 1 for the main one; 0 for none
  double x = 0.0;
  double y = 0.0;
};

// A surface that OpenGL paints on: its size in pixels and the rectangle of the world that it shows.
struct tagVWOPENGLSURFACE {
  std::int32_t width = 0;
  std::int32_t height = 0;
  double x = 0.0;
  double y = 0.0;
  double worldWidth = 0.0;
  double worldHeight = 0.0;
};

class IVWSurface {
 public:
  virtual ~IVWSurface() = default;

  // Makes an OpenGL context current, with a matrix mode and matrices that tools may use, and returns what the surface
  // shows. On failure no context is current.
  virtual HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE& info) = 0;
  virtual HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE& info) = 0;
};

// kNullPointer without a surface or a record.
HRESULT vwSurfaceBeginRenderOpenGL(IVWSurface* surface, tagVWOPENGLSURFACE* info);
HRESULT vwSurfaceEndRenderOpenGL(IVWSurface* surface, const tagVWOPENGLSURFACE* info);

class IVWViewer : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A831}");

  // Requests a repaint of a tool's layer; `area` null for all of it.
  virtual HRESULT InvalidateLayer(IUnknown* layer, const void* area) = 0;
  virtual HWND Window() = 0;
  // The time that the viewer shows.
  virtual double CurrentTime() = 0;
  // Begin and end of a drag of a tool; between them the viewer defers changes that would disturb it.
  virtual HRESULT BeginInteraction(const tagVWPENEVENT& event) = 0;
  virtual HRESULT DoInteraction(const tagVWPENEVENT& event) = 0;
  virtual HRESULT EndInteraction() = 0;
  // Puts a tool on top of the viewer's tools and links it to the viewer and to what the viewer shows;
  // `context` is the handle for RemoveContext, never 0. A tool that cannot be linked is not kept.
  virtual HRESULT PushContext(std::int32_t kind, IUnknown* tool, std::uintptr_t* context) = 0;
  // Unlinks and removes it. kWrongArgument for an unknown handle.
  virtual HRESULT RemoveContext(std::uintptr_t context) = 0;

 protected:
  ~IVWViewer() = default;
};

inline constexpr std::int32_t kVWInteractiveContext = 19;

// `viewer` is a viewer, or an object that one shows. kNullPointer without a tool, a viewer or a place for the handle;
// kNoInterface for what is neither. The two choices and the delay are always off.
HRESULT VWControllerPushContext(std::int32_t kind, IUnknown* tool, IUnknown* viewer, bool exclusive, bool modal,
                                double delay, std::uintptr_t* context);
HRESULT VWControllerRemoveContext(std::uintptr_t context);

// A layer of the viewer: what a tool paints, and what it is linked to.
class IViewerLayer : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A832}");

  virtual HRESULT OnRender(IVWSurface* surface) = 0;
  // The edited object, with IDSProperties. Borrowed: it is unlinked before it is destroyed.
  virtual HRESULT OnLinkToOperator(IUnknown* newOperator) = 0;
  virtual HRESULT OnUnlinkFromOperator() = 0;
  // Borrowed likewise.
  virtual HRESULT OnLinkToViewer(IVWViewer* newViewer) = 0;
  virtual HRESULT OnUnlinkFromViewer() = 0;

 protected:
  ~IViewerLayer() = default;
};

class IViewerEventSink : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A833}");

  // kOk if the tool took the event; kFalse offers it to the next tool.
  virtual HRESULT OnPenDown(const tagVWPENEVENT& event) = 0;
  virtual HRESULT OnPenMove(const tagVWPENEVENT& event) = 0;
  virtual HRESULT OnPenUp(const tagVWPENEVENT& event) = 0;

 protected:
  ~IViewerEventSink() = default;
};

class IDSPropertyNotifySink : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A834}");

  // `value` is null when the change has no value of its own.
  virtual HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) = 0;

 protected:
  ~IDSPropertyNotifySink() = default;
};

class IDSTimeNotifySink : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A835}");

  virtual HRESULT OnOnTimeChange(double time) = 0;

 protected:
  ~IDSTimeNotifySink() = default;
};

}  // namespace vblur
