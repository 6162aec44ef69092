// SPDX-License-Identifier: MIT

// Looks up what a JSON Schema (2020-12) says of a place in a document. Only what documents' schema uses is understood:
// references, `allOf` with conditions on "type", `anyOf`, properties, items.

export interface Schema {
    $ref?: string;
    $defs?: Record<string, Schema>;
    description?: string;
    type?: string | string[];
    enum?: unknown[];
    const?: unknown;
    default?: unknown;
    examples?: unknown[];
    required?: string[];
    properties?: Record<string, Schema>;
    additionalProperties?: Schema | boolean;
    items?: Schema;
    anyOf?: Schema[];
    oneOf?: Schema[];
    allOf?: Schema[];
    if?: Schema;
    then?: Schema;
}

/** What decides between the schemas of an object: its keys that have a plain value. */
export type Members = Map<string, unknown>;

export class SchemaReader {
    constructor(private readonly root: Schema) {}

    /** The schemas that hold for the value behind a key of an object, or for an element where there is no key. */
    inside(schemas: Schema[], key: string | null, members: Members): Schema[] {
        return this.expanded(schemas, members).flatMap((schema) => {
            if (key === null) return schema.items ? [schema.items] : [];
            const property = schema.properties?.[key];
            if (property) return [property];
            return typeof schema.additionalProperties === "object" ? [schema.additionalProperties] : [];
        });
    }

    /** The keys that an object may have, each with what is said of it; those that it must have are marked. */
    keys(schemas: Schema[], members: Members): Map<string, { schema: Schema; isRequired: boolean }> {
        const found = new Map<string, { schema: Schema; isRequired: boolean }>();
        for (const schema of this.expanded(schemas, members))
            for (const [key, property] of Object.entries(schema.properties ?? {}))
                found.set(key, {
                    schema: property,
                    isRequired: (schema.required?.includes(key) ?? false) || (found.get(key)?.isRequired ?? false),
                });
        return found;
    }

    /** The plain values that are proposed at a place. */
    values(schemas: Schema[]): unknown[] {
        const found = new Set<unknown>();
        for (const schema of this.expanded(schemas, new Map())) {
            for (const value of schema.enum ?? []) found.add(value);
            if (schema.const !== undefined) found.add(schema.const);
            if (schema.default !== undefined) found.add(schema.default);
            for (const value of schema.examples ?? []) found.add(value);
            if ([schema.type].flat().includes("boolean") && schema.enum === undefined) found.add(true).add(false);
        }
        return [...found];
    }

    /** The kinds of JSON value that may stand at a place: "object", "array", "string" … */
    types(schemas: Schema[]): Set<string> {
        const found = new Set<string>();
        for (const schema of this.expanded(schemas, new Map()))
            for (const type of [schema.type ?? []].flat()) found.add(type);
        return found;
    }

    description(schemas: Schema[], members: Members): string {
        const own = schemas.find((schema) => schema.description)?.description;
        return own ?? this.expanded(schemas, members).findLast((schema) => schema.description)?.description ?? "";
    }

    /** What is known of the type that an object names. */
    typeDescription(schemas: Schema[], members: Members): string {
        return this.expanded(schemas, members).findLast((schema) => schema.description)?.description ?? "";
    }

    private expanded(schemas: Schema[], members: Members): Schema[] {
        return schemas.flatMap((schema) => this.expand(schema, members));
    }

    private expand(schema: Schema, members: Members): Schema[] {
        const found = [schema];
        if (schema.$ref) {
            const target = this.root.$defs?.[schema.$ref.replace("#/$defs/", "")];
            if (target) found.push(...this.expand(target, members));
        }
        for (const part of [...(schema.anyOf ?? []), ...(schema.oneOf ?? [])])
            found.push(...this.expand(part, members));
        for (const part of schema.allOf ?? [])
            if (!part.if || this.holds(part.if, members)) found.push(...this.expand(part.then ?? part, members));
        return found;
    }

    private holds(condition: Schema, members: Members): boolean {
        const known = (condition.required ?? []).every((key) => members.has(key));
        return (
            known &&
            Object.entries(condition.properties ?? {}).every(
                ([key, schema]) => schema.const === undefined || members.get(key) === schema.const,
            )
        );
    }
}
