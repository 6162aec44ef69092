// SPDX-License-Identifier: MIT
// What users write, with all that there is.
import {
  check,
  Document,
  schema,
  sign,
  TavrinError,
  version,
  widgetResponse,
  type Diagnostic,
  type Pixels,
  type View,
  type Widget,
  type WidgetOptions,
} from 'tavrin';

const options: WidgetOptions = {
  size: [338, 158],
  screen: '390x844',
  scale: 2,
  appearance: 'dark',
  date: new Date(),
  timeZone: 'UTC',
  background: 'none',
  rounded: true,
  imageCacheDir: 'pictures',
  maxImageSize: [100, 100],
  fetch: 'none',
  fontDir: 'fonts',
  format: 'svg',
  compression: 'small',
  quality: 80,
  budget: { profile: 'strangers', steps: 1, pixels: 1, bytes: 1, seconds: 1 },
};

export async function draw(signal: AbortSignal): Promise<Buffer> {
  const document = new Document('{}', { budget: 'strangers' });
  const opened: Document = await Document.open(new URL('file:///agenda.json'), { signal });
  const widget: Widget = await document.widget(
    { name: 'Ada' },
    { family: 'systemSmall', date: '2026-01-01T00:00:00Z' },
  );
  await opened.widget();
  await opened.widget(null, options);
  await opened.widget(new Uint8Array(2), { ...options, signal });
  const pixels: Pixels = await widget.pixels({ signal });
  const bytes: Uint8ClampedArray = pixels.data;
  const tree: View = await widget.tree();
  const [x, y] = (await widget.layout()).frame ?? [0, 0];
  const destinations: string[] = (await widget.targets()).targets.map(target => target.destination);
  const reasons: string = (await widget.explain()) + (await widget.explain('nodes.main', { signal }));
  const until: number | undefined = widget.validUntil?.getTime();
  console.log(bytes, tree.view, x + y, destinations, reasons, until);
  return widget.encode('png', { compression: 'small', quality: 1, signal });
}

export async function serve(request: Request, document: Document): Promise<Response> {
  return widgetResponse(document, null, { ...options, request, signal: request.signal });
}

export async function errors(text: Uint8Array): Promise<string[]> {
  const found: Diagnostic[] = await check(text, null, { families: ['systemSmall'], ...options });
  console.log(sign('/v1/widgets/a.png', 'key', { expires: new Date() }), sign('/a', Buffer.from('key')));
  console.log(Object.keys(schema()), version.split('.'));
  return found
    .filter(({ severity }) => severity === 'error')
    .map(({ range, fix }) => `${range?.line}${fix?.[0]?.text}`);
}

export function where(error: unknown): string {
  if (!(error instanceof TavrinError)) throw error;
  return `${error.role}:${error.line}:${error.column}: ${error.type} ${error.kind} at ${error.path?.join('.')}`;
}
