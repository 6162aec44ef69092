/* SPDX-License-Identifier: MIT */
#ifndef TAVRIN_C_H
#define TAVRIN_C_H

/*
 * Tavrin for programs in C and for whatever calls C: documents in, pictures out.
 *
 *     tavrin_document *document = NULL;
 *     tavrin_widget *widget = NULL;
 *     tavrin_bytes *png = NULL;
 *     tavrin_options options = TAVRIN_OPTIONS_INIT;
 *     options.family = "systemSmall";
 *     if (tavrin_document_create(text, text_size, NULL, &document) != TAVRIN_OK ||
 *         tavrin_widget_create(document, NULL, 0, &options, &widget) != TAVRIN_OK ||
 *         tavrin_widget_encode(widget, NULL, &png) != TAVRIN_OK)
 *         fprintf(stderr, "%s\n", tavrin_last_error());
 *     else
 *         fwrite(tavrin_bytes_data(png), 1, tavrin_bytes_size(png), stdout);
 *     tavrin_bytes_free(png);
 *     tavrin_widget_free(widget);
 *     tavrin_document_free(document);
 *
 * Texts are UTF-8. Where a size in bytes stands beside a text it needs no end, else a text ends with 0. What a function
 * is handed is read before it returns and never kept. What it hands out through its last parameter belongs to the
 * caller, who frees it; on failure that is set to NULL. Nothing is thrown across and nothing aborts.
 *
 * Documents, widgets and bytes never change: any number of threads may use one at once, as long as none frees it.
 */

/* NOLINTBEGIN: names and headers of C */
#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define TAVRIN_API __attribute__((visibility("default")))
#else
#define TAVRIN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* How a call ended. What is not TAVRIN_OK is explained by tavrin_last_error. */
typedef enum tavrin_status {
    TAVRIN_OK = 0,
    TAVRIN_DECODING_ERROR = 1,      /* a text is no document, or no model */
    TAVRIN_CONVERSION_ERROR = 2,    /* a text in it is not what its property takes */
    TAVRIN_MODEL_CONTEXT_ERROR = 3, /* an expression leads nowhere in the model */
    TAVRIN_ERROR = 4,               /* what else fails: binding, drawing, writing, a budget that is spent */
    TAVRIN_OPTION_ERROR = 5,        /* an option that cannot be followed */
    TAVRIN_OUT_OF_MEMORY = 6,
    TAVRIN_MISUSE = 7 /* a parameter that must not be NULL is, or a handle is none that lives */
} tavrin_status;

/* A decoded document. */
typedef struct tavrin_document tavrin_document;
/* A document bound to a model at one moment, in one room. */
typedef struct tavrin_widget tavrin_widget;
/* Bytes that were handed out: a picture or a text, behind which a 0 stands that does not count. */
typedef struct tavrin_bytes tavrin_bytes;
/* By which any thread ends what works with it. */
typedef struct tavrin_cancel_token tavrin_cancel_token;

/* In points. */
typedef struct tavrin_size {
    double width;
    double height;
} tavrin_size;

/*
 * How a document becomes a picture. What is 0 or NULL is not given, and its default holds; TAVRIN_OPTIONS_INIT gives
 * nothing but the struct's own size, by which later versions know what an older program has.
 */
typedef struct tavrin_options {
    size_t struct_size;          /* sizeof(tavrin_options) */
    const char* family;          /* a widget family's name; default "systemMedium" */
    tavrin_size size;            /* the widget's size, instead of a family's */
    tavrin_size screen;          /* the screen whose widget sizes hold; default 390 x 844 */
    double scale;                /* pixels for each point, above 0 and up to 100; default 3 */
    const char* appearance;      /* "light" (default) or "dark" */
    const char* date;            /* the moment that is drawn, RFC 3339; default now */
    const char* time_zone;       /* a zone's name; default the machine's */
    const char* background;      /* "RRGGBB" with or without "#", "none" or "auto" (default) */
    int rounded;                 /* not 0: cut the home screen's rounded corners */
    const char* image_cache_dir; /* the folder in which pictures are looked for instead of on the network */
    tavrin_size max_image_size;  /* larger pictures are scaled down to this size */
    const char* fetch;           /* "none", "public" (default) or "all" */
    const char* font_dir;        /* a folder of fonts to draw with instead of the system's */
    const char* format;          /* "png" (default), "svg", "pdf", "webp" or "jpeg" */
    const char* compression;     /* "fast" (default), "balanced" or "small" */
    uint64_t quality;            /* 1 to 100, of a JPEG (default 85), and of a WebP that is not to be lossless */
    const char* budget;          /* "usual" (default) or "strangers" */
    uint64_t budget_steps;       /* these stand instead of the budget's own */
    uint64_t budget_pixels;
    uint64_t budget_bytes;
    double budget_seconds;
    const tavrin_cancel_token* cancel; /* what ends the work; it may be freed at once */
} tavrin_options;

/* clang-format off */
#ifdef __cplusplus
#define TAVRIN_OPTIONS_INIT { sizeof(tavrin_options) }
#else
#define TAVRIN_OPTIONS_INIT { .struct_size = sizeof(tavrin_options) }
#endif
/* clang-format on */

/* The version's number, 10,000 * major + 100 * minor + patch, and through `text`, which may be NULL, "0.1.0". */
TAVRIN_API int tavrin_version(const char** text);

/*
 * The error of the calling thread's last call that failed, as a JSON object on one line: `type`, `message`, and where
 * there are any `kind`, `domain`, `code`, `path` (a list of keys and indices), `key`, `role` ("document" or "model"),
 * `line` and `column` (from 1), `option`. "" before the first failure. Good until the thread's next call that fails.
 */
TAVRIN_API const char* tavrin_last_error(void);

/* Decodes a document. Of the options, which may be NULL, the budget counts. */
TAVRIN_API tavrin_status tavrin_document_create(const char* text, size_t size, const tavrin_options* options,
                                                tavrin_document** document);
/* Frees a document; widgets that were made of it live on. NULL is nothing to free, here and below. */
TAVRIN_API void tavrin_document_free(tavrin_document* document);

/* Binds a document to a model, NULL for none. `options` may be NULL. */
TAVRIN_API tavrin_status tavrin_widget_create(const tavrin_document* document, const char* model, size_t model_size,
                                              const tavrin_options* options, tavrin_widget** widget);
TAVRIN_API void tavrin_widget_free(tavrin_widget* widget);

/*
 * Draws the widget and writes the picture. Of `picture`, which may be NULL, format, compression and quality count,
 * where they are given, instead of those that the widget was made with.
 */
TAVRIN_API tavrin_status tavrin_widget_encode(const tavrin_widget* widget, const tavrin_options* picture,
                                              tavrin_bytes** bytes);
/*
 * Draws the widget: rows from top to bottom without gaps, each pixel four bytes R, G, B, A, colours not multiplied by
 * alpha. `width` and `height` are in pixels.
 */
TAVRIN_API tavrin_status tavrin_widget_pixels(const tavrin_widget* widget, uint32_t* width, uint32_t* height,
                                              tavrin_bytes** bytes);
/* The view tree, the same with every view's frame in points, and where the widget can be tapped: JSON texts. */
TAVRIN_API tavrin_status tavrin_widget_tree(const tavrin_widget* widget, tavrin_bytes** json);
TAVRIN_API tavrin_status tavrin_widget_layout(const tavrin_widget* widget, tavrin_bytes** json);
TAVRIN_API tavrin_status tavrin_widget_targets(const tavrin_widget* widget, tavrin_bytes** json);
/* Why each view, or those that come from a path of the document, have their size and place. `path` may be NULL. */
TAVRIN_API tavrin_status tavrin_widget_explain(const tavrin_widget* widget, const char* path, tavrin_bytes** text);
/*
 * When the pixels change next: `*changes` is 0 where they never do, else 1, and `*seconds` the moment, in seconds since
 * 1970-01-01 00:00:00 UTC. Never late; early where a clock's hand turns or a timer is cut off.
 */
TAVRIN_API tavrin_status tavrin_widget_valid_until(const tavrin_widget* widget, int* changes, double* seconds);

/*
 * What is wrong or doubtful in a document: a JSON array of objects with `severity`, `code`, `message`, `role`, `path`,
 * and where known `range` and `fix`. It is looked at in each of `family_count` families, or where that is 0 in the
 * room that the options say. `model` and `options` may be NULL.
 */
TAVRIN_API tavrin_status tavrin_check(const char* text, size_t size, const char* model, size_t model_size,
                                      const char* const* families, size_t family_count, const tavrin_options* options,
                                      tavrin_bytes** json);
/* The JSON Schema of documents. */
TAVRIN_API tavrin_status tavrin_schema(tavrin_bytes** json);

TAVRIN_API const void* tavrin_bytes_data(const tavrin_bytes* bytes);
TAVRIN_API size_t tavrin_bytes_size(const tavrin_bytes* bytes);
TAVRIN_API void tavrin_bytes_free(tavrin_bytes* bytes);

TAVRIN_API tavrin_status tavrin_cancel_token_create(tavrin_cancel_token** token);
/* Ends what works with the token soon, with an error of kind "Budget". Any thread may call it; it cannot be undone. */
TAVRIN_API void tavrin_cancel(const tavrin_cancel_token* token);
TAVRIN_API void tavrin_cancel_token_free(tavrin_cancel_token* token);

#ifdef __cplusplus
}
#endif

/* NOLINTEND */
#endif
