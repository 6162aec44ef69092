/* SPDX-License-Identifier: MIT */
/*
 * A host in C99. `host draw DOCUMENT MODEL|- FORMAT OUT [OPTION VALUE]...` draws as a user's program would; `host test
 * DOCUMENT` tries what goes wrong, and says what did not go as it should; `host freed` the same with freed handles, which
 * debug builds know.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <tavrin/tavrin_c.h>

static int failures = 0;

#define EXPECT(condition)                                                      \
    do {                                                                       \
        if (!(condition)) {                                                    \
            fprintf(stderr, "%d: %s; %s\n", __LINE__, #condition, tavrin_last_error()); \
            ++failures;                                                        \
        }                                                                      \
    } while (0)

/* A whole file with a 0 behind it; the caller frees it. */
static char *read_file(const char *path, size_t *size) {
    FILE *file = fopen(path, "rb");
    char *text = NULL;
    long length = 0;
    if (file == NULL) return NULL;
    if (fseek(file, 0, SEEK_END) == 0 && (length = ftell(file)) >= 0 && fseek(file, 0, SEEK_SET) == 0) {
        text = malloc((size_t)length + 1);
        *size = text == NULL ? 0 : fread(text, 1, (size_t)length, file);
        if (text != NULL) text[*size] = '\0';
    }
    fclose(file);
    return text;
}

static int write_file(const char *path, const tavrin_bytes *bytes) {
    FILE *file = fopen(path, "wb");
    size_t written = 0;
    if (file == NULL) return 0;
    written = fwrite(tavrin_bytes_data(bytes), 1, tavrin_bytes_size(bytes), file);
    return fclose(file) == 0 && written == tavrin_bytes_size(bytes);
}

/* Sets one option from words, as the tests name them. */
static int set_option(tavrin_options *options, const char *name, const char *value) {
    if (strcmp(name, "family") == 0) options->family = value;
    else if (strcmp(name, "appearance") == 0) options->appearance = value;
    else if (strcmp(name, "date") == 0) options->date = value;
    else if (strcmp(name, "time_zone") == 0) options->time_zone = value;
    else if (strcmp(name, "background") == 0) options->background = value;
    else if (strcmp(name, "image_cache_dir") == 0) options->image_cache_dir = value;
    else if (strcmp(name, "fetch") == 0) options->fetch = value;
    else if (strcmp(name, "compression") == 0) options->compression = value;
    else if (strcmp(name, "budget") == 0) options->budget = value;
    else if (strcmp(name, "rounded") == 0) options->rounded = strcmp(value, "0") != 0;
    else if (strcmp(name, "scale") == 0) options->scale = strtod(value, NULL);
    else if (strcmp(name, "quality") == 0) options->quality = strtoull(value, NULL, 10);
    else if (strcmp(name, "budget_steps") == 0) options->budget_steps = strtoull(value, NULL, 10);
    else if (strcmp(name, "size") == 0) return sscanf(value, "%lfx%lf", &options->size.width, &options->size.height) == 2;
    else return 0;
    return 1;
}

static int draw(int count, char **words) {
    tavrin_options options = TAVRIN_OPTIONS_INIT;
    tavrin_document *document = NULL;
    tavrin_widget *widget = NULL;
    tavrin_bytes *picture = NULL;
    size_t size = 0, model_size = 0;
    int i = 0, done = 0;
    char *text = read_file(words[0], &size);
    char *model = strcmp(words[1], "-") == 0 ? NULL : read_file(words[1], &model_size);
    options.format = words[2];
    for (i = 4; i + 1 < count; i += 2)
        if (!set_option(&options, words[i], words[i + 1])) fprintf(stderr, "no option %s\n", words[i]);
    done = text != NULL && tavrin_document_create(text, size, &options, &document) == TAVRIN_OK &&
           tavrin_widget_create(document, model, model_size, &options, &widget) == TAVRIN_OK &&
           tavrin_widget_encode(widget, NULL, &picture) == TAVRIN_OK && write_file(words[3], picture);
    if (!done) fprintf(stderr, "%s\n", tavrin_last_error());
    tavrin_bytes_free(picture);
    tavrin_widget_free(widget);
    tavrin_document_free(document);
    free(text);
    free(model);
    return done ? 0 : 1;
}

static int starts_with(const tavrin_bytes *bytes, const char *text) {
    return tavrin_bytes_size(bytes) >= strlen(text) && memcmp(tavrin_bytes_data(bytes), text, strlen(text)) == 0;
}

static int error_says(const char *text) { return strstr(tavrin_last_error(), text) != NULL; }

static void test_answers(const tavrin_widget *widget) {
    tavrin_bytes *bytes = NULL;
    tavrin_options picture = TAVRIN_OPTIONS_INIT;
    uint32_t width = 0, height = 0;
    int changes = -1;
    double seconds = -1;
    EXPECT(tavrin_widget_encode(widget, NULL, &bytes) == TAVRIN_OK && starts_with(bytes, "\x89PNG"));
    tavrin_bytes_free(bytes);
    picture.format = "svg";
    EXPECT(tavrin_widget_encode(widget, &picture, &bytes) == TAVRIN_OK && starts_with(bytes, "<?xml"));
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_pixels(widget, &width, &height, &bytes) == TAVRIN_OK);
    EXPECT(width > 0 && height > 0 && tavrin_bytes_size(bytes) == (size_t)width * height * 4);
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_tree(widget, &bytes) == TAVRIN_OK && starts_with(bytes, "{"));
    EXPECT(((const char *)tavrin_bytes_data(bytes))[tavrin_bytes_size(bytes)] == '\0');
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_layout(widget, &bytes) == TAVRIN_OK && starts_with(bytes, "{"));
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_targets(widget, &bytes) == TAVRIN_OK && starts_with(bytes, "{"));
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_explain(widget, NULL, &bytes) == TAVRIN_OK && tavrin_bytes_size(bytes) > 0);
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_widget_explain(widget, "nodes.nowhere", &bytes) == TAVRIN_ERROR && bytes == NULL);
    EXPECT(tavrin_widget_valid_until(widget, &changes, &seconds) == TAVRIN_OK && (changes == 0 || changes == 1));
}

static void test_errors(void) {
    static const char broken[] = "{\"version\": \"1.0\", \"nodes\": {\"main\": {\"type\": \"nonsense\"}}}";
    tavrin_document *document = NULL;
    tavrin_bytes *bytes = NULL;
    EXPECT(tavrin_document_create("{", 1, NULL, &document) == TAVRIN_DECODING_ERROR && document == NULL);
    EXPECT(error_says("\"type\":\"DecodingError\"") && error_says("\"line\":1"));
    EXPECT(tavrin_document_create(broken, strlen(broken), NULL, &document) == TAVRIN_DECODING_ERROR);
    EXPECT(error_says("\"path\":"));
    EXPECT(tavrin_document_create(NULL, 0, NULL, &document) == TAVRIN_DECODING_ERROR);
    EXPECT(tavrin_document_create(NULL, 5, NULL, &document) == TAVRIN_MISUSE);
    EXPECT(tavrin_document_create("{}", 2, NULL, NULL) == TAVRIN_MISUSE);
    EXPECT(tavrin_widget_encode(NULL, NULL, &bytes) == TAVRIN_MISUSE && error_says("NULL"));
    EXPECT(tavrin_bytes_data(NULL) == NULL && tavrin_bytes_size(NULL) == 0);
    EXPECT(tavrin_check("{", 1, NULL, 0, NULL, 0, NULL, &bytes) == TAVRIN_OK && starts_with(bytes, "[{"));
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_schema(&bytes) == TAVRIN_OK && starts_with(bytes, "{"));
    tavrin_bytes_free(bytes);
    tavrin_document_free(NULL);
    tavrin_widget_free(NULL);
    tavrin_bytes_free(NULL);
    tavrin_cancel_token_free(NULL);
}

static void expect_option_error(const tavrin_document *document, const tavrin_options *options, const char *text) {
    tavrin_widget *widget = NULL;
    EXPECT(tavrin_widget_create(document, NULL, 0, options, &widget) == TAVRIN_OPTION_ERROR && widget == NULL);
    EXPECT(error_says(text));
}

static void test_options(const tavrin_document *document) {
    struct { tavrin_options known; char more[16]; } newer;
    tavrin_widget *widget = NULL;
    tavrin_options options = TAVRIN_OPTIONS_INIT;
    options.family = "systemTiny";
    expect_option_error(document, &options, "family takes systemSmall");
    options.family = NULL;
    options.scale = -1;
    expect_option_error(document, &options, "scale takes a number above 0");
    options.scale = 0;
    options.time_zone = "Mars/Olympus";
    expect_option_error(document, &options, "\"option\":\"time_zone\"");
    options.time_zone = NULL;
    options.quality = 101;
    expect_option_error(document, &options, "quality takes a whole number from 1 to 100");
    options.quality = 0;
    options.struct_size = 0;
    EXPECT(tavrin_widget_create(document, NULL, 0, &options, &widget) == TAVRIN_MISUSE);
    options.struct_size = offsetof(tavrin_options, scale); /* an older program's */
    EXPECT(tavrin_widget_create(document, NULL, 0, &options, &widget) == TAVRIN_OK);
    tavrin_widget_free(widget);
    memset(&newer, 0, sizeof newer);
    newer.known.struct_size = sizeof newer;
    EXPECT(tavrin_widget_create(document, NULL, 0, &newer.known, &widget) == TAVRIN_OK);
    tavrin_widget_free(widget);
    newer.more[8] = 1;
    EXPECT(tavrin_widget_create(document, NULL, 0, &newer.known, &widget) == TAVRIN_MISUSE && widget == NULL);
}

static void test_budget(const tavrin_document *document) {
    tavrin_options options = TAVRIN_OPTIONS_INIT;
    tavrin_widget *widget = NULL;
    tavrin_bytes *bytes = NULL;
    tavrin_cancel_token *token = NULL;
    options.budget_steps = 1;
    EXPECT(tavrin_widget_create(document, NULL, 0, &options, &widget) == TAVRIN_ERROR);
    EXPECT(error_says("\"kind\":\"Budget\""));
    options.budget_steps = 0;
    EXPECT(tavrin_cancel_token_create(&token) == TAVRIN_OK);
    options.cancel = token;
    EXPECT(tavrin_widget_create(document, NULL, 0, &options, &widget) == TAVRIN_OK);
    tavrin_cancel(token);
    EXPECT(tavrin_widget_encode(widget, NULL, &bytes) == TAVRIN_ERROR && bytes == NULL && error_says("Budget"));
    tavrin_widget_free(widget);
    tavrin_cancel_token_free(token);
}

static int test(const char *path) {
    tavrin_document *document = NULL;
    tavrin_widget *widget = NULL;
    const char *version = NULL;
    size_t size = 0;
    char *text = read_file(path, &size);
    EXPECT(tavrin_version(&version) > 0 && version != NULL && tavrin_version(NULL) > 0);
    EXPECT(strcmp(tavrin_last_error(), "") == 0);
    EXPECT(text != NULL && tavrin_document_create(text, size, NULL, &document) == TAVRIN_OK);
    test_options(document);
    test_budget(document);
    EXPECT(tavrin_widget_create(document, NULL, 0, NULL, &widget) == TAVRIN_OK);
    tavrin_document_free(document);
    test_answers(widget); /* lives on */
    tavrin_widget_free(widget);
    test_errors();
    free(text);
    return failures == 0 ? 0 : 1;
}

/* Debug builds know which handles live. */
static int test_freed(void) {
    tavrin_cancel_token *token = NULL;
    tavrin_document *document = NULL;
    tavrin_bytes *bytes = NULL;
    tavrin_widget *widget = NULL;
    static const char text[] = "{\"version\": \"1.0\", \"nodes\": {\"main\": {\"type\": \"text\", \"content\": \"a\"}}}";
    EXPECT(tavrin_document_create(text, strlen(text), NULL, &document) == TAVRIN_OK);
    EXPECT(tavrin_widget_create(document, NULL, 0, NULL, &widget) == TAVRIN_OK);
    tavrin_document_free(document);
    tavrin_widget_free(widget);
    EXPECT(tavrin_widget_create(document, NULL, 0, NULL, &widget) == TAVRIN_MISUSE && error_says("freed"));
    EXPECT(tavrin_schema(&bytes) == TAVRIN_OK);
    tavrin_bytes_free(bytes);
    EXPECT(tavrin_bytes_data(bytes) == NULL && tavrin_bytes_size(bytes) == 0);
    EXPECT(tavrin_cancel_token_create(&token) == TAVRIN_OK);
    tavrin_cancel_token_free(token);
    tavrin_cancel(token);
    return failures == 0 ? 0 : 1;
}

int main(int count, char **words) {
    if (count > 5 && strcmp(words[1], "draw") == 0) return draw(count - 2, words + 2);
    if (count == 3 && strcmp(words[1], "test") == 0) return test(words[2]);
    if (count == 2 && strcmp(words[1], "freed") == 0) return test_freed();
    fprintf(stderr, "host draw DOCUMENT MODEL|- FORMAT OUT [OPTION VALUE]... | host test DOCUMENT | host freed\n");
    return 2;
}
