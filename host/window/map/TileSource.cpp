// SPDX-License-Identifier: MIT
// A class of GObject's, because the library asks such a class for its tiles.

#include "host/window/map/TileSource.h"

#include "host/window/map/ScaledTile.h"

#include <algorithm>
#include <utility>

namespace {

struct SourceInstance {
    ShumateDataSource parent;
    std::shared_ptr<host::TileFile>* file; // owned
};
struct SourceClass {
    ShumateDataSourceClass parent;
};

struct Request {
    std::shared_ptr<host::TileFile> file;
    int zoom;
    int column;
    int row;
};

void freeBytes(gpointer bytes)
{
    g_bytes_unref(static_cast<GBytes*>(bytes));
}

void readTile(GTask* task, gpointer, gpointer data, GCancellable*)
{
    const auto& request = *static_cast<Request*>(data);
    const auto tile = host::scaledTile(*request.file, request.zoom, request.column, request.row);
    if (tile)
        g_task_return_pointer(task, g_bytes_new(tile->data(), tile->size()),
                              [](gpointer bytes) { g_bytes_unref(static_cast<GBytes*>(bytes)); });
    else
        g_task_return_new_error(task, G_IO_ERROR, G_IO_ERROR_NOT_FOUND, "no tile");
}

void freeRequest(gpointer owned)
{
    const std::unique_ptr<Request> freed{static_cast<Request*>(owned)};
}

// The library draws what the signal brings; the result only ends the request.
void deliverTile(GObject* source, GAsyncResult* result, gpointer outer)
{
    auto* const task = static_cast<GTask*>(outer);
    GError* error = nullptr;
    auto* const bytes = static_cast<GBytes*>(g_task_propagate_pointer(G_TASK(result), &error));
    if (bytes != nullptr) {
        const auto& request = *static_cast<Request*>(g_task_get_task_data(G_TASK(result)));
        g_signal_emit_by_name(source, "received-data", request.column, request.row, request.zoom,
                              bytes);
        g_task_return_pointer(task, bytes, freeBytes);
    } else {
        g_task_return_error(task, error);
    }
    g_object_unref(task);
}

void startReading(ShumateDataSource* source, int column, int row, int zoom,
                  GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GTask* const outer = g_task_new(source, cancellable, callback, data);
    GTask* const task = g_task_new(source, cancellable, deliverTile, outer);
    auto request = std::make_unique<Request>(
        Request{*reinterpret_cast<SourceInstance*>(source)->file, zoom, column, row});
    g_task_set_task_data(task, request.release(), freeRequest);
    g_task_run_in_thread(task, readTile);
    g_object_unref(task);
}

GBytes* finishReading(ShumateDataSource*, GAsyncResult* result, GError** error)
{
    return static_cast<GBytes*>(g_task_propagate_pointer(G_TASK(result), error));
}

void finalizeSource(GObject* object)
{
    const std::unique_ptr<std::shared_ptr<host::TileFile>> freed{
        reinterpret_cast<SourceInstance*>(object)->file};
    G_OBJECT_CLASS(g_type_class_peek(SHUMATE_TYPE_DATA_SOURCE))->finalize(object);
}

void initializeSourceClass(gpointer sourceClass, gpointer)
{
    G_OBJECT_CLASS(sourceClass)->finalize = finalizeSource;
    SHUMATE_DATA_SOURCE_CLASS(sourceClass)->get_tile_data_async = startReading;
    SHUMATE_DATA_SOURCE_CLASS(sourceClass)->get_tile_data_finish = finishReading;
}

GType sourceType()
{
    static const GType type = g_type_register_static_simple(
        SHUMATE_TYPE_DATA_SOURCE, "HostTileSource", sizeof(SourceClass), initializeSourceClass,
        sizeof(SourceInstance), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace

namespace host {

ShumateMapSource* newTileSource(std::shared_ptr<TileFile> file)
{
    constexpr guint kTileSide = 256; // pixels on the map, whatever the picture has
    const auto description = file->description();
    auto* const data = static_cast<SourceInstance*>(g_object_new(sourceType(), nullptr));
    data->file = std::make_unique<std::shared_ptr<TileFile>>(std::move(file)).release();
    auto* const source = shumate_raster_renderer_new_full(
        "file", description.name.c_str(), "", "",
        static_cast<guint>(std::max(description.leastZoom - kMostLevelsBefore, 0)),
        TileFile::kMostZoom, kTileSide, SHUMATE_MAP_PROJECTION_MERCATOR, &data->parent);
    g_object_unref(data);
    return SHUMATE_MAP_SOURCE(source);
}

} // namespace host
